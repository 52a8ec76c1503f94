// The rows of a tree of the system's folders.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "base/signal.h"
#include "platform/files.h"

namespace tarnvale {

/// One row, or the root, which has the drives for its rows and isn't shown.
struct FolderRow {
  std::string name;             ///< a drive's is its root folder
  FolderRow* parent = nullptr;  ///< none for the root
  std::size_t place = 0;        ///< among the parent's children
  bool is_read = false;         ///< the children are known
  bool is_fresh = false;        ///< read since it was last opened
  std::vector<std::unique_ptr<FolderRow>> children;

  bool IsDrive() const { return parent != nullptr && parent->parent == nullptr; }
  /// Unknown until the row is read: shown as one that can be opened.
  bool MayHaveChildren() const { return !is_read || !children.empty(); }
};

/// A row for each drive, and below it the folders, hidden ones included, each read
/// when it is first opened. A folder that can't be read has no rows.
class FolderTreeRows {
 public:
  explicit FolderTreeRows(FileSystem& files);
  FolderTreeRows(const FolderTreeRows&) = delete;
  FolderTreeRows& operator=(const FolderTreeRows&) = delete;

  FolderRow& Root() { return root_; }
  /// No backslash at its end but for a drive's root; empty for the root.
  Path PathOf(const FolderRow& row) const;
  /// The row of a folder, everything above it read; none when there is no such
  /// folder. A folder that the listings leave out gets a row all the same.
  FolderRow* Find(const Path& folder);

  /// Adds and removes the rows of drives that came and went.
  void RefreshDrives();
  /// False for a drive that may be empty or out of reach: nothing is read of it before
  /// it is opened.
  bool AnswersAtOnce(const FolderRow& row) const;

  /// Reads a row that is opened and hasn't been read.
  void Open(FolderRow& row);
  /// Reads an opened row again, unless Open has just read it, and adds and removes
  /// rows. The row of a folder that is gone goes too. Rows below it that had none may
  /// have children again.
  void Refresh(FolderRow& row);
  /// Reads a row that hasn't been read yet and answers at once, to learn whether it can
  /// be opened. True when that changed anything.
  bool Peek(FolderRow& row);

  /// Rows from `first` on, below `parent`.
  struct Change {
    FolderRow& parent;
    std::size_t first;
    std::size_t count;
  };
  // Emitted before and after each change, for a view to follow.
  Signal<const Change&> Inserting;
  Signal<> Inserted;
  Signal<const Change&> Removing;
  Signal<> Removed;

 private:
  std::vector<std::string> List(const FolderRow& row) const;
  FolderRow* Child(FolderRow& row, const std::string& name);
  void Read(FolderRow& row);
  void Insert(FolderRow& row, std::size_t at, const std::vector<std::string>& names);
  void Remove(FolderRow& row, std::size_t from, std::size_t count);
  void Update(FolderRow& row, const std::vector<std::string>& names);

  FileSystem& files_;
  std::vector<Drive> drives_;
  FolderRow root_;
};

}  // namespace tarnvale
