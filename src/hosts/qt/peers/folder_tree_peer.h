#pragma once

#include <QTimer>
#include <QTreeView>

#include "hosts/qt/peers/folder_tree_model.h"
#include "hosts/qt/peers/peer.h"

namespace tarnvale {

/// The tree of the system's folders.
class FolderTreePeer final : public Peer {
 public:
  FolderTreePeer(PeerContext& context, FolderTree& tree, QWidget& parent);

  void OnFrame() override;

 private:
  QModelIndex Selected() const;
  void ReportSelection();
  void PeekAtVisible();

  FolderTree& tree_;
  FolderTreeRows rows_;
  FolderTreeModel model_{rows_};
  QTreeView* view_;
  QTimer peek_;
  bool starts_anew_ = false;
  bool is_showing_ = false;
};

}  // namespace tarnvale
