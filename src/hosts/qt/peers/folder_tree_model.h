// The system's folders for Qt's tree view.
#pragma once

#include <QAbstractItemModel>
#include <QIcon>

#include "ui/folder_tree_rows.h"

namespace tarnvale {

/// Shows the rows of a folder tree, and follows them.
class FolderTreeModel final : public QAbstractItemModel {
 public:
  explicit FolderTreeModel(FolderTreeRows& rows);

  FolderRow& RowOf(const QModelIndex& index) const;
  QModelIndex IndexOf(const FolderRow* row) const;

  QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex& parent) const override;
  bool hasChildren(const QModelIndex& parent) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  FolderTreeRows& rows_;
  QIcon folder_icon_;
  QIcon computer_icon_;
};

}  // namespace tarnvale
