// Menus.
#pragma once

#include <deque>
#include <string>

#include "base/property.h"
#include "base/signal.h"

namespace tarnvale {

/// One row of a menu, or a menu that opens from a row. "&" in a caption marks
/// the access key, "&&" is shown as "&". A caption of "-" is a separator.
class MenuItem {
 public:
  explicit MenuItem(std::string caption = {}) : Caption(std::move(caption)) {}
  MenuItem(const MenuItem&) = delete;
  MenuItem& operator=(const MenuItem&) = delete;

  bool IsSeparator() const { return Caption.Get() == "-"; }

  /// Adds a row below this one. `item` must outlive this.
  void Add(MenuItem& item) { rows_.push_back(&item); }
  void AddSeparator() { rows_.push_back(&separators_.emplace_back("-")); }
  const std::deque<MenuItem*>& Rows() const { return rows_; }

  Property<std::string> Caption;
  Property<bool> Enabled{true};
  /// Shown in bold where the menu pops up.
  Property<bool> IsDefault{false};
  Signal<> Clicked;

 private:
  std::deque<MenuItem*> rows_;
  std::deque<MenuItem> separators_;
};

}  // namespace tarnvale
