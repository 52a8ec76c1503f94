#include "hosts/qt/peers/list_selection.h"

#include <QScrollBar>

namespace tarnvale {

std::vector<bool> SelectedRows(const QItemSelectionModel& selection) {
  std::vector<bool> rows(static_cast<std::size_t>(selection.model()->rowCount()), false);
  for (const QItemSelectionRange& range : selection.selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      rows[static_cast<std::size_t>(row)] = true;
    }
  }
  return rows;
}

void SelectRows(QItemSelectionModel& selection,
                const std::function<bool(std::size_t)>& is_selected) {
  const QAbstractItemModel& model = *selection.model();
  const int count = model.rowCount();
  QItemSelection wanted;
  for (int row = 0; row < count; ++row) {
    if (!is_selected(static_cast<std::size_t>(row))) continue;
    const int first = row;
    while (row + 1 < count && is_selected(static_cast<std::size_t>(row) + 1)) ++row;
    wanted.append(QItemSelectionRange(model.index(first, 0), model.index(row, 0)));
  }
  selection.select(wanted, QItemSelectionModel::ClearAndSelect);
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
