// Lists of rows: the view, and the selection between record and view.
#pragma once

#include <QListView>

#include <cstddef>
#include <optional>
#include <vector>

#include "ui/row_selection.h"

namespace tarnvale {

/// What the user selected in a view.
struct ViewSelection {
  std::vector<bool> rows;
  std::optional<std::size_t> current;
};
ViewSelection SelectionOf(const QListView& view);

/// Selects exactly the rows of the record that are selected.
void ShowSelection(const RowSelection& record, QListView& view);

/// A view of equally high rows of text, quick with any number of them. The
/// caller owns it by its parent.
QListView* MakeRowsView(QWidget& parent, bool multi_select);

}  // namespace tarnvale
