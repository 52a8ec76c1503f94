#include "hosts/qt/peers/folder_tree_model.h"

#include "hosts/qt/qt_pictures.h"
#include "hosts/qt/qt_text.h"

namespace tarnvale {

FolderTreeModel::FolderTreeModel(FolderTreeRows& rows)
    : rows_(rows), folder_icon_(PictureNamed("folder")), computer_icon_(PictureNamed("computer")) {
  rows_.Inserting.Listen([this](const FolderTreeRows::Change& change) {
    beginInsertRows(IndexOf(&change.parent), static_cast<int>(change.first),
                    static_cast<int>(change.first + change.count) - 1);
  });
  rows_.Inserted.Listen([this] { endInsertRows(); });
  rows_.Removing.Listen([this](const FolderTreeRows::Change& change) {
    beginRemoveRows(IndexOf(&change.parent), static_cast<int>(change.first),
                    static_cast<int>(change.first + change.count) - 1);
  });
  rows_.Removed.Listen([this] { endRemoveRows(); });
}

FolderRow& FolderTreeModel::RowOf(const QModelIndex& index) const {
  return index.isValid() ? *static_cast<FolderRow*>(index.internalPointer()) : rows_.Root();
}

QModelIndex FolderTreeModel::IndexOf(const FolderRow* row) const {
  if (row == nullptr || row->parent == nullptr) return {};
  return createIndex(static_cast<int>(row->place), 0, row);
}

QModelIndex FolderTreeModel::index(int row, int column, const QModelIndex& parent) const {
  const auto& rows = RowOf(parent).children;
  if (column != 0 || row < 0 || static_cast<std::size_t>(row) >= rows.size()) return {};
  return IndexOf(rows[static_cast<std::size_t>(row)].get());
}

QModelIndex FolderTreeModel::parent(const QModelIndex& index) const {
  return IndexOf(RowOf(index).parent);
}

int FolderTreeModel::rowCount(const QModelIndex& parent) const {
  return static_cast<int>(RowOf(parent).children.size());
}

int FolderTreeModel::columnCount(const QModelIndex&) const {
  return 1;
}

bool FolderTreeModel::hasChildren(const QModelIndex& parent) const {
  return RowOf(parent).MayHaveChildren();
}

bool FolderTreeModel::canFetchMore(const QModelIndex& parent) const {
  return !RowOf(parent).is_read;
}

void FolderTreeModel::fetchMore(const QModelIndex& parent) {
  rows_.Open(RowOf(parent));
}

QVariant FolderTreeModel::data(const QModelIndex& index, int role) const {
  const FolderRow& row = RowOf(index);
  switch (role) {
    case Qt::DisplayRole:
      return row.IsDrive() ? QStringLiteral("Computer") : ToShown(row.name);
    case Qt::DecorationRole:
      return row.IsDrive() ? computer_icon_ : folder_icon_;
    default:
      return {};
  }
}

}  // namespace tarnvale
