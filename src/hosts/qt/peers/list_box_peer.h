#pragma once

#include <QListView>

#include "hosts/qt/peers/peer.h"
#include "hosts/qt/peers/rows_model.h"

namespace tarnvale {

/// A list of rows. Rows follow the record at once, the selection once a frame.
class ListBoxPeer final : public Peer {
 public:
  ListBoxPeer(PeerContext& context, ListBox& list, QWidget& parent);

  void OnFrame() override;

 private:
  void ReportSelection();

  ListBox& list_;
  RowsModel model_;
  QListView* view_;
  bool is_showing_ = false;
};

}  // namespace tarnvale
