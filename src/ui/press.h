// Clicks on what is drawn.
#pragma once

#include <optional>

#include "ui/input.h"

namespace tarnvale {

/// A mouse button that is pressed and released inside of a control clicks it.
class Press {
 public:
  void Down(MouseButton button) { held_ = button; }
  /// The press was the second of a double click.
  void Forget() { held_.reset(); }
  /// True for a click.
  bool Up(MouseButton button, bool is_inside) {
    if (held_ != button) return false;
    held_.reset();
    return is_inside;
  }

 private:
  std::optional<MouseButton> held_;
};

}  // namespace tarnvale
