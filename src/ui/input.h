// What the user does with mouse and keyboard.
#pragma once

namespace tarnvale {

enum class MouseButton { kNone, kLeft, kRight, kMiddle };

enum class Key { kOther, kSpace, kEnter, kEscape, kTab, kDelete, kLeft, kRight, kUp, kDown };

struct KeyPress {
  Key key = Key::kOther;
  /// What the key types: a letter, a blank, but also the control characters of
  /// Backspace, Enter, Escape and of letters with Ctrl. 0 for a key that types none.
  char32_t character = 0;
  bool shift = false;
  bool control = false;
  bool alt = false;
};

enum class PointerShape {
  kDefault,
  kHourglass,
  kHand,
  kPicture,  ///< the control's PointerPicture
};

}  // namespace tarnvale
