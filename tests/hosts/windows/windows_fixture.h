// Native windows for records, with everything around them.
#pragma once

#include "hosts/windows/peers/native_peer.h"
#include "hosts/windows/wide.h"
#include "hosts/windows/windows_message_boxes.h"
#include "hosts/windows/windows_window_host.h"
#include "tests/hosts/windows/desktop_fixture.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_files.h"

namespace tarnvale::testing {

class WindowsWindowTest : public WindowsDesktopTest {
 protected:
  /// Puts one control on `window`, 200 by 100 pixels below the one before it.
  void Place(Control& control, Control* container = nullptr) {
    window.Place({{&control, container, {10, next_top, 200, 100}}});
    next_top += 110;
  }

  /// Adopts and shows `window`, and waits until it is the active one.
  void Show() {
    window.ClientSize = {300, next_top + 20};
    host.Adopt(window);
    window.Show();
    ASSERT_TRUE(WaitFor([&] {
      return host.NativeOf(window) != nullptr && ::GetActiveWindow() == Native() &&
             host.Surroundings().ActiveWindow.Get() == &window;
    }));
  }

  HWND NativeOf(const Window& of) { return host.NativeOf(of)->Native(); }
  HWND Native() { return NativeOf(window); }
  Peer& PeerOf(Control& control) { return *host.NativeOf(window)->PeerOf(control); }

  static LPARAM At(const RECT& area, POINT within) {
    return MAKELPARAM(area.left + within.x, area.top + within.y);
  }
  void Mouse(UINT message, Control& control, POINT within, WPARAM held) {
    ::SendMessageW(Native(), message, held, At(PeerOf(control).Area(), within));
  }
  void Click(Control& control, POINT within = {5, 5}) {
    Mouse(WM_LBUTTONDOWN, control, within, MK_LBUTTON);
    Mouse(WM_LBUTTONUP, control, within, 0);
  }
  void PressKey(WPARAM key) {
    ::SendMessageW(::GetFocus(), WM_KEYDOWN, key, 1);
    ::SendMessageW(::GetFocus(), WM_KEYUP, key, 1);
  }
  /// The colour on the screen, as 0xRRGGBB.
  unsigned ColorAt(LONG x, LONG y) {
    HDC dc = ::GetDC(Native());
    const COLORREF color = ::GetPixel(dc, x, y);
    ::ReleaseDC(Native(), dc);
    return (color & 0xFFU) << 16U | (color & 0xFF00U) | (color >> 16U & 0xFFU);
  }
  /// The native control of a record.
  HWND NativeOf(Control& control) { return dynamic_cast<NativePeer&>(PeerOf(control)).Native(); }
  static LRESULT Send(HWND control, UINT message, WPARAM first = 0, LPARAM second = 0) {
    return ::SendMessageW(control, message, first, second);
  }
  static void Type(HWND control, std::wstring_view text) {
    for (const wchar_t c : text) Send(control, WM_CHAR, c);
  }
  static void PressKey(HWND control, WPARAM key) {
    Send(control, WM_KEYDOWN, key);
    Send(control, WM_KEYUP, key);
  }
  static void Click(HWND control, int x, int y) {
    Send(control, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    Send(control, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
  }

  FakeClock clock;
  FakeFiles files{clock};
  WindowsMessageBoxes boxes{host};
  WindowsWindowHost host{loop, files, boxes,
                         [](const std::wstring& native) { return Narrow(native); }};
  Window window;
  int next_top = 10;
};

}  // namespace tarnvale::testing
