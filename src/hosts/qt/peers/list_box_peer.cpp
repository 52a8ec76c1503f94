#include "hosts/qt/peers/list_box_peer.h"

#include <QScopedValueRollback>

#include "hosts/qt/peers/list_selection.h"

namespace tarnvale {

ListBoxPeer::ListBoxPeer(PeerContext& context, ListBox& list, QWidget& parent)
    : Peer(context, list),
      list_(list),
      model_(list.Rows, context.ending),
      view_(MakeRowsView(parent, list.MultiSelect)) {
  view_->setModel(&model_);
  // While rows come and go the view moves its selection by itself; the record
  // has moved its own.
  model_.before_change = [this] { is_showing_ = true; };
  model_.after_change = [this] {
    is_showing_ = false;
    RequestFrame();
  };
  Follow(list_.SelectionChanged, [this] { RequestFrame(); });
  connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { ReportSelection(); });
  connect(view_, &QListView::doubleClicked, this,
          [this] { Report([this] { list_.DoubleClicked.Emit(); }); });
  Adopt(view_);
  OnFrame();
}

void ListBoxPeer::OnFrame() {
  const QScopedValueRollback showing(is_showing_, true);
  ShowSelection(list_, *view_);
}

void ListBoxPeer::ReportSelection() {
  if (is_showing_) return;
  const ViewSelection now = SelectionOf(*view_);
  Report([&] { list_.Take(now.rows, now.current); });
}

}  // namespace tarnvale
