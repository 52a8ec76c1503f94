#include "hosts/qt/peers/file_list_peer.h"

#include <QScopedValueRollback>

#include "hosts/qt/peers/list_selection.h"
#include "hosts/qt/qt_pictures.h"
#include "hosts/qt/qt_text.h"

namespace tarnvale {

FilesModel::FilesModel(const FileList& files, const bool& ending)
    : files_(files),
      ending_(ending),
      count_(static_cast<int>(files.Rows().size())),
      icon_(PictureNamed("file")) {}

int FilesModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count_;
}

QVariant FilesModel::data(const QModelIndex& index, int role) const {
  if (ending_) return {};
  const auto row = static_cast<std::size_t>(index.row());
  if (row >= files_.Rows().size()) return {};
  if (role == Qt::DisplayRole) return ToShown(files_.Rows()[row]);
  if (role == Qt::DecorationRole) return icon_;
  return {};
}

void FilesModel::Reset() {
  beginResetModel();
  count_ = static_cast<int>(files_.Rows().size());
  endResetModel();
}

FileListPeer::FileListPeer(PeerContext& context, FileList& files, QWidget& parent)
    : Peer(context, files),
      files_(files),
      model_(files, context.ending),
      view_(MakeRowsView(parent, true)) {
  view_->setModel(&model_);
  Follow(files_.RowsChanged, [this] {
    const QScopedValueRollback showing(is_showing_, true);
    model_.Reset();
    RequestFrame();
  });
  Follow(files_.SelectionChanged, [this] { RequestFrame(); });
  connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { ReportSelection(); });
  connect(view_, &QListView::doubleClicked, this,
          [this] { Report([this] { files_.DoubleClicked.Emit(); }); });
  Adopt(view_);
  OnFrame();
}

void FileListPeer::OnFrame() {
  const QScopedValueRollback showing(is_showing_, true);
  ShowSelection(files_, *view_);
}

void FileListPeer::ReportSelection() {
  if (is_showing_) return;
  const ViewSelection now = SelectionOf(*view_);
  Report([&] { files_.Take(now.rows, now.current); });
}

}  // namespace tarnvale
