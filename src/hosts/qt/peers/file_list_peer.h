#pragma once

#include <QAbstractListModel>
#include <QIcon>
#include <QListView>

#include "hosts/qt/peers/peer.h"

namespace tarnvale {

/// The rows of a FileList for Qt's views.
class FilesModel final : public QAbstractListModel {
 public:
  /// `ending` becomes true when the record may be gone.
  FilesModel(const FileList& files, const bool& ending);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  void Reset();

 private:
  const FileList& files_;
  const bool& ending_;
  int count_;
  QIcon icon_;
};

/// The files of one folder.
class FileListPeer final : public Peer {
 public:
  FileListPeer(PeerContext& context, FileList& files, QWidget& parent);

  void OnFrame() override;

 private:
  void ReportSelection();

  FileList& files_;
  FilesModel model_;
  QListView* view_;
  bool is_showing_ = false;
};

}  // namespace tarnvale
