#include "hosts/qt/peers/folder_tree_peer.h"

#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <chrono>

namespace tarnvale {
namespace {

constexpr std::chrono::milliseconds kPeekDelay{40};

class TreeView final : public QTreeView {
 public:
  explicit TreeView(QWidget& parent) : QTreeView(&parent) {
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    setTextElideMode(Qt::ElideNone);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setResizeContentsPrecision(0);
  }

 protected:
  void showEvent(QShowEvent* event) override {
    QTreeView::showEvent(event);
    if (currentIndex().isValid()) scrollTo(currentIndex(), PositionAtCenter);
    resizeColumnToContents(0);
  }
  // The header measures the visible rows, but not again when others come into view.
  void scrollContentsBy(int dx, int dy) override {
    QTreeView::scrollContentsBy(dx, dy);
    if (dy != 0) resizeColumnToContents(0);
  }
  void resizeEvent(QResizeEvent* event) override {
    QTreeView::resizeEvent(event);
    resizeColumnToContents(0);
  }
};

}  // namespace

FolderTreePeer::FolderTreePeer(PeerContext& context, FolderTree& tree, QWidget& parent)
    : Peer(context, tree), tree_(tree), rows_(context.files), view_(new TreeView(parent)) {
  view_->setModel(&model_);
  peek_.setSingleShot(true);
  connect(&peek_, &QTimer::timeout, this, [this] { PeekAtVisible(); });
  Follow(tree_.Started, [this] {
    starts_anew_ = true;
    RequestFrame();
  });
  Follow(tree_.SelectedPath.Changed, [this] { RequestFrame(); });
  connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { ReportSelection(); });
  connect(view_, &QTreeView::expanded, this, [this](const QModelIndex& index) {
    // Not in the midst of the view's own work on the rows.
    const QPersistentModelIndex opened(index);
    context_.loop.Post([this, opened] {
      if (opened.isValid()) rows_.Refresh(model_.RowOf(opened));
      peek_.start(kPeekDelay);
    });
  });
  connect(view_->verticalScrollBar(), &QScrollBar::valueChanged, this,
          [this] { peek_.start(kPeekDelay); });
  Adopt(view_);
  if (tree_.SelectedPath.Get().empty()) return;
  starts_anew_ = true;
  OnFrame();
}

QModelIndex FolderTreePeer::Selected() const {
  // The current row isn't it: a tree that gets the focus goes to its first row.
  const QModelIndexList rows = view_->selectionModel()->selectedRows();
  return rows.isEmpty() ? QModelIndex() : rows.first();
}

void FolderTreePeer::OnFrame() {
  const Path& path = tree_.SelectedPath.Get();
  if (!starts_anew_ && rows_.PathOf(model_.RowOf(Selected())) == path) return;
  starts_anew_ = false;
  const QScopedValueRollback showing(is_showing_, true);
  const QModelIndex index = model_.IndexOf(rows_.Find(path));
  view_->setCurrentIndex(index);
  if (!index.isValid()) {
    view_->clearSelection();
    view_->expand(model_.index(0, 0, {}));
    return;
  }
  for (QModelIndex above = index.parent(); above.isValid(); above = above.parent()) {
    view_->expand(above);
  }
  view_->scrollTo(index, QAbstractItemView::PositionAtCenter);
  peek_.start(kPeekDelay);
}

void FolderTreePeer::ReportSelection() {
  if (is_showing_) return;
  const QModelIndex selected = Selected();
  if (!selected.isValid()) return;
  Report([&] { tree_.SelectedPath = rows_.PathOf(model_.RowOf(selected)); });
}

void FolderTreePeer::PeekAtVisible() {
  if (!view_->isVisible()) return;
  const QRect area = view_->viewport()->rect();
  for (QModelIndex index = view_->indexAt(area.topLeft()); index.isValid();
       index = view_->indexBelow(index)) {
    if (!view_->visualRect(index).intersects(area)) return;
    if (!rows_.Peek(model_.RowOf(index))) continue;
    // One folder at a time: each may be large.
    view_->viewport()->update();
    peek_.start(std::chrono::milliseconds::zero());
    return;
  }
}

}  // namespace tarnvale
