// Lists of rows: the view, and the selection between record and view.
#pragma once

#include <QItemSelectionModel>
#include <QListView>

#include <cstddef>
#include <functional>
#include <vector>

namespace tarnvale {

/// Which of the model's rows are selected.
std::vector<bool> SelectedRows(const QItemSelectionModel& selection);

/// Selects exactly the rows for which `is_selected` holds.
void SelectRows(QItemSelectionModel& selection,
                const std::function<bool(std::size_t)>& is_selected);

/// A view of equally high rows of text, quick with any number of them. The
/// caller owns it by its parent.
QListView* MakeRowsView(QWidget& parent, bool multi_select);

}  // namespace tarnvale
