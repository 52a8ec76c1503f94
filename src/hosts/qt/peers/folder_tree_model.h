// The system's folders for Qt's tree view.
#pragma once

#include <QAbstractItemModel>
#include <QIcon>

#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"

namespace tarnvale {

/// One top row for the drive, and below it the folders, hidden ones included,
/// each read when it is first opened.
class FolderTreeModel final : public QAbstractItemModel {
 public:
  explicit FolderTreeModel(FileSystem& files);
  ~FolderTreeModel() override;

  /// The row of a folder, everything above it read; invalid when there is no
  /// such folder. A folder that the listings leave out gets a row all the same.
  QModelIndex Find(const Path& folder);
  /// No backslash at its end but for the drive's root.
  Path PathOf(const QModelIndex& index) const;
  QModelIndex Drive() const { return index(0, 0, {}); }

  /// Reads an opened folder again, unless it has just been read, and adds and
  /// removes rows. The row of a folder that is gone goes too.
  void Refresh(const QModelIndex& index);
  /// Reads a folder that hasn't been read yet, to learn whether it can be opened.
  /// True when that changed anything.
  bool Peek(const QModelIndex& index);

  QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex& parent) const override;
  bool hasChildren(const QModelIndex& parent) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Node;

  Node* NodeOf(const QModelIndex& index) const;
  QModelIndex IndexOf(const Node& node) const;
  Path PathOf(const Node& node) const;
  std::vector<std::string> List(const Node& node) const;
  Node* Child(Node& node, const std::string& name);
  void Read(Node& node);
  void Insert(Node& node, std::size_t at, const std::vector<std::string>& names);
  void Remove(Node& node, std::size_t from, std::size_t count);
  void Update(Node& node, const std::vector<std::string>& names);

  FileSystem& files_;
  std::unique_ptr<Node> root_;
  QIcon folder_icon_;
  QIcon computer_icon_;
};

}  // namespace tarnvale
