// What the user does with mouse and keyboard.
#pragma once

namespace tarnvale {

enum class MouseButton { kNone, kLeft, kRight, kMiddle };

enum class Key { kOther, kSpace, kEnter, kEscape, kTab, kDelete, kLeft, kRight, kUp, kDown };

struct KeyPress {
  Key key = Key::kOther;
  bool shift = false;
  bool control = false;
  bool alt = false;
};

enum class PointerShape { kDefault, kHourglass, kHand };

}  // namespace tarnvale
