// A list of texts that reports its changes: the rows of list and combo boxes.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/signal.h"

namespace tarnvale {

class RowList {
 public:
  std::size_t Count() const { return rows_.size(); }
  /// The row at `index`; an empty text beyond the end.
  const std::string& At(std::size_t index) const {
    static const std::string kNone;
    return index < rows_.size() ? rows_[index] : kNone;
  }
  const std::vector<std::string>& Rows() const { return rows_; }

  void Append(std::string row) {
    rows_.push_back(std::move(row));
    Appended.Emit();
  }
  /// Does nothing beyond the end.
  void RemoveAt(std::size_t index) {
    if (index >= rows_.size()) return;
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(index));
    Removed.Emit(index);
  }
  void Assign(std::vector<std::string> rows) {
    rows_ = std::move(rows);
    Reset.Emit();
  }
  void Clear() { Assign({}); }

  Signal<> Appended;            ///< one row, at the end
  Signal<std::size_t> Removed;  ///< the row that had this index
  Signal<> Reset;               ///< everything may be different

 private:
  std::vector<std::string> rows_;
};

}  // namespace tarnvale
