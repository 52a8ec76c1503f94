#include "ui/row_selection.h"

#include <algorithm>

namespace tarnvale {

void RowSelection::Select(std::size_t index, bool selected) {
  if (index >= selected_.size() || selected_[index] == selected) return;
  if (selected && !MultiSelect) selected_.assign(selected_.size(), false);
  selected_[index] = selected;
  if (selected) last_ = index;
  SelectionChanged.Emit();
}

void RowSelection::SelectNone() {
  if (!FirstSelected()) return;
  selected_.assign(selected_.size(), false);
  SelectionChanged.Emit();
}

void RowSelection::Take(const std::vector<bool>& rows, std::optional<std::size_t> current) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!rows[i]) Select(i, false);
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i] && i != current) Select(i, true);
  }
  if (current && *current < rows.size() && rows[*current]) Select(*current, true);
}

std::optional<std::size_t> RowSelection::FirstSelected() const {
  const auto first = std::find(selected_.begin(), selected_.end(), true);
  if (first == selected_.end()) return std::nullopt;
  return static_cast<std::size_t>(first - selected_.begin());
}

void RowSelection::StartRows(std::size_t count) {
  selected_.assign(count, false);
  last_.reset();
}

void RowSelection::RemoveRow(std::size_t index) {
  if (index >= selected_.size()) return;
  selected_.erase(selected_.begin() + static_cast<std::ptrdiff_t>(index));
  last_.reset();
}

}  // namespace tarnvale
