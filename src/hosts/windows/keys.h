// What the user does, out of the system's messages.
#pragma once

#include "hosts/windows/system_headers.h"
#include "ui/geometry.h"
#include "ui/input.h"

namespace tarnvale {

/// Of a WM_KEYDOWN or WM_SYSKEYDOWN that is being served. What it types waits in the
/// thread's queue.
KeyPress ToKeyPress(HWND window, WPARAM key);
/// Takes what the key types out of the queue, so that nobody gets it.
void DropTyped(HWND window);

/// Of a mouse message: the button that it is about, or that is held down while the mouse
/// moves; of several the left one, then the right one.
MouseButton ButtonOf(UINT message);
MouseButton HeldButton(WPARAM held);

inline bool IsPress(UINT message) {
  return message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN || message == WM_MBUTTONDOWN;
}
inline bool IsDoublePress(UINT message) {
  return message == WM_LBUTTONDBLCLK || message == WM_RBUTTONDBLCLK || message == WM_MBUTTONDBLCLK;
}
inline bool IsRelease(UINT message) {
  return message == WM_LBUTTONUP || message == WM_RBUTTONUP || message == WM_MBUTTONUP;
}

/// Where the mouse is, by a message's second argument.
inline POINT PointOf(LPARAM where) {
  return {static_cast<short>(LOWORD(where)), static_cast<short>(HIWORD(where))};
}

}  // namespace tarnvale
