#include "hosts/windows/keys.h"

namespace tarnvale {
namespace {

Key ToKey(WPARAM key) {
  switch (key) {
    case VK_SPACE:
      return Key::kSpace;
    case VK_RETURN:
      return Key::kEnter;
    case VK_ESCAPE:
      return Key::kEscape;
    case VK_TAB:
      return Key::kTab;
    case VK_DELETE:
      return Key::kDelete;
    case VK_LEFT:
      return Key::kLeft;
    case VK_RIGHT:
      return Key::kRight;
    case VK_UP:
      return Key::kUp;
    case VK_DOWN:
      return Key::kDown;
    default:
      return Key::kOther;
  }
}

bool IsHeld(int key) {
  return ::GetKeyState(key) < 0;
}

// A message of `first` to `last` that waits; its number is 0 when there is none.
MSG Waiting(HWND window, UINT first, UINT last, UINT remove) {
  MSG message{};
  if (::PeekMessageW(&message, window, first, last, remove | PM_NOYIELD) == 0) message.message = 0;
  return message;
}

constexpr UINT kTypedKinds[] = {WM_CHAR, WM_SYSCHAR};

char32_t TypedBy(HWND window) {
  for (const UINT kind : kTypedKinds) {
    const MSG message = Waiting(window, kind, kind, PM_NOREMOVE);
    if (message.message == kind) return static_cast<char32_t>(message.wParam);
  }
  return 0;
}

}  // namespace

KeyPress ToKeyPress(HWND window, WPARAM key) {
  // Of Tab none is typed.
  const char32_t typed = key == VK_TAB ? U'\0' : TypedBy(window);
  return {.key = ToKey(key),
          .character = typed,
          .shift = IsHeld(VK_SHIFT),
          .control = IsHeld(VK_CONTROL),
          .alt = IsHeld(VK_MENU)};
}

void DropTyped(HWND window) {
  for (const UINT kind : kTypedKinds) {
    while (Waiting(window, kind, kind, PM_REMOVE).message == kind) {
    }
  }
}

MouseButton ButtonOf(UINT message) {
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
      return MouseButton::kLeft;
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
    case WM_RBUTTONDBLCLK:
      return MouseButton::kRight;
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
    case WM_MBUTTONDBLCLK:
      return MouseButton::kMiddle;
    default:
      return MouseButton::kNone;
  }
}

MouseButton HeldButton(WPARAM held) {
  if ((held & MK_LBUTTON) != 0) return MouseButton::kLeft;
  if ((held & MK_RBUTTON) != 0) return MouseButton::kRight;
  if ((held & MK_MBUTTON) != 0) return MouseButton::kMiddle;
  return MouseButton::kNone;
}

}  // namespace tarnvale
