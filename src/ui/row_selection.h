// Which rows of a list are selected.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/signal.h"

namespace tarnvale {

/// The part of a list that the user works with; its rows are the list's own.
class RowSelection {
 public:
  /// Selecting a row gives up the others, unless this is set.
  bool MultiSelect = false;

  bool IsSelected(std::size_t index) const { return index < selected_.size() && selected_[index]; }
  /// Ignored beyond the end.
  void Select(std::size_t index, bool selected);
  void SelectNone();
  /// What the user selected, row by row; of several new ones `current` is the last.
  void Take(const std::vector<bool>& rows, std::optional<std::size_t> current);
  /// The first selected row; none when no row is.
  std::optional<std::size_t> FirstSelected() const;
  Signal<> SelectionChanged;
  Signal<> DoubleClicked;

 protected:
  // The rows changed; none of these emits.
  void StartRows(std::size_t count);
  void AddRow() { selected_.push_back(false); }
  void RemoveRow(std::size_t index);
  /// Selected last, even if it isn't any more; none since the rows came.
  std::optional<std::size_t> LastSelected() const { return last_; }

 private:
  std::vector<bool> selected_;
  std::optional<std::size_t> last_;
};

}  // namespace tarnvale
