#include "hosts/qt/peers/list_selection.h"

#include <QItemSelectionModel>

namespace tarnvale {

ViewSelection SelectionOf(const QListView& view) {
  ViewSelection now;
  now.rows.resize(static_cast<std::size_t>(view.model()->rowCount()), false);
  for (const QItemSelectionRange& range : view.selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      now.rows[static_cast<std::size_t>(row)] = true;
    }
  }
  const QModelIndex current = view.currentIndex();
  if (current.isValid()) now.current = static_cast<std::size_t>(current.row());
  return now;
}

void ShowSelection(const RowSelection& record, QListView& view) {
  const QAbstractItemModel& model = *view.model();
  const int count = model.rowCount();
  const auto is_selected = [&](int row) {
    return record.IsSelected(static_cast<std::size_t>(row));
  };
  QItemSelection wanted;
  for (int row = 0; row < count; ++row) {
    if (!is_selected(row)) continue;
    const int first = row;
    while (row + 1 < count && is_selected(row + 1)) ++row;
    wanted.append(QItemSelectionRange(model.index(first, 0), model.index(row, 0)));
  }
  view.selectionModel()->select(wanted, QItemSelectionModel::ClearAndSelect);
}

QListView* MakeRowsView(QWidget& parent, bool multi_select) {
  auto* view = new QListView(&parent);
  view->setUniformItemSizes(true);
  view->setEditTriggers(QAbstractItemView::NoEditTriggers);
  view->setSelectionMode(multi_select ? QAbstractItemView::ExtendedSelection
                                      : QAbstractItemView::SingleSelection);
  view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  view->setTextElideMode(Qt::ElideMiddle);
  view->setTabKeyNavigation(false);
  return view;
}

}  // namespace tarnvale
