// Native windows for records, with everything around them.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "hosts/windows/peers/drawn_peer.h"
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
  // The real pointer is elsewhere.
  WindowsWindowTest() { ::SetCursorPos(0, 0); }

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
    if (auto* native = dynamic_cast<NativePeer*>(&PeerOf(control))) {
      Click(native->Native(), within.x, within.y);
      return;
    }
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

  // What the user does and sees, in the words of every desktop's fixture.

  enum class Held { kNothing, kShift, kControl };

  bool IsShown(const Window& of) { return ::IsWindowVisible(NativeOf(of)) != 0; }
  bool IsMinimised(const Window& of) { return ::IsIconic(NativeOf(of)) != 0; }
  void PressCross(const Window& of) { ::SendMessageW(NativeOf(of), WM_CLOSE, 0, 0); }
  void MinimiseByHand(const Window& of) {
    ::SendMessageW(NativeOf(of), WM_SYSCOMMAND, SC_MINIMIZE, 0);
  }
  void RestoreByHand(const Window& of) {
    ::SendMessageW(NativeOf(of), WM_SYSCOMMAND, SC_RESTORE, 0);
  }
  bool IsActive(const Window& of) { return ::GetActiveWindow() == NativeOf(of); }
  void Activate(const Window& of) {
    if (!IsActive(of)) ::SetForegroundWindow(NativeOf(of));
  }
  /// Says whether the native window of a record, which may go before it, is still there.
  std::function<bool()> LifeOf(const Window& of) {
    return [native = NativeOf(of)] { return ::IsWindow(native) != 0; };
  }

  bool ShowsFocus(Control& control) { return ::GetFocus() == NativeOf(control); }
  /// To the control that has the focus.
  void PressKey(Key key, Held held = Held::kNothing) {
    static const std::map<Key, WPARAM> keys{{Key::kSpace, VK_SPACE},
                                            {Key::kEnter, VK_RETURN},
                                            {Key::kTab, VK_TAB},
                                            {Key::kDelete, VK_DELETE}};
    const auto hold = [](bool is_held) {
      BYTE state[256] = {};
      ::GetKeyboardState(state);
      state[VK_SHIFT] = is_held ? 0x80 : 0;
      ::SetKeyboardState(state);
    };
    hold(held == Held::kShift);
    PressKey(keys.at(key));
    hold(false);
  }
  /// "\r" is Enter, "\b" erases.
  void Type(Control& control, const std::string& text) { Type(NativeOf(control), Wide(text)); }

  void PressMouse(Control& control, POINT at) { Mouse(WM_LBUTTONDOWN, control, at, MK_LBUTTON); }
  /// The second one of a double click.
  void PressMouseAgain(Control& control, POINT at) {
    Mouse(WM_LBUTTONDBLCLK, control, at, MK_LBUTTON);
  }
  void MoveMouse(Control& control, POINT at, bool is_held) {
    Mouse(WM_MOUSEMOVE, control, at, is_held ? MK_LBUTTON : 0);
  }
  void ReleaseMouse(Control& control, POINT at) { Mouse(WM_LBUTTONUP, control, at, 0); }
  void LeaveByMouse(Control&) { ::SendMessageW(Native(), WM_MOUSELEAVE, 0, 0); }
  /// Another window goes from above it.
  void Uncover(Control& control) {
    ::InvalidateRect(Native(), &PeerOf(control).Area(), FALSE);
    ::UpdateWindow(Native());
  }
  bool ShowsTick(Control& control) {
    return dynamic_cast<DrawnPeer&>(PeerOf(control)).StateForReaders().checked == true;
  }

  /// Lines end in "\n".
  std::string TextIn(TextBox& box) {
    std::string text = Narrow(TextOf(NativeOf(box)));
    std::erase(text, '\r');
    return text;
  }
  std::string SelectedTextIn(TextBox& box) {
    DWORD start = 0;
    DWORD end = 0;
    Send(NativeOf(box), EM_GETSEL, reinterpret_cast<WPARAM>(&start),
         reinterpret_cast<LPARAM>(&end));
    return Narrow(TextOf(NativeOf(box)).substr(start, end - start));
  }
  void SelectByHand(TextBox& box, int start, int length) {
    Send(NativeOf(box), EM_SETSEL, static_cast<WPARAM>(start), start + length);
  }

  std::vector<std::string> RowsIn(Control& list) {
    std::vector<std::string> rows;
    for (LRESULT i = 0; i < Send(NativeOf(list), LB_GETCOUNT); ++i) {
      wchar_t text[256] = L"";
      Send(NativeOf(list), LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
      rows.push_back(Narrow(text));
    }
    return rows;
  }
  std::vector<int> SelectedRowsIn(Control& list) {
    std::vector<int> rows;
    const auto is_selected = [&](int row) {
      const bool has_many = (::GetWindowLongPtrW(NativeOf(list), GWL_STYLE) & LBS_EXTENDEDSEL) != 0;
      return has_many ? Send(NativeOf(list), LB_GETSEL, static_cast<WPARAM>(row)) > 0
                      : Send(NativeOf(list), LB_GETCURSEL) == row;
    };
    for (int i = 0; i < Send(NativeOf(list), LB_GETCOUNT); ++i) {
      if (is_selected(i)) rows.push_back(i);
    }
    return rows;
  }
  void ClickRow(Control& list, int row, Held held = Held::kNothing) {
    const WPARAM keys = held == Held::kShift ? MK_SHIFT : held == Held::kControl ? MK_CONTROL : 0;
    Send(NativeOf(list), WM_LBUTTONDOWN, MK_LBUTTON | keys, MiddleOf(list, row));
    Send(NativeOf(list), WM_LBUTTONUP, keys, MiddleOf(list, row));
  }
  void DoubleClickRow(Control& list, int row) {
    ClickRow(list, row);
    Send(NativeOf(list), WM_LBUTTONDBLCLK, MK_LBUTTON, MiddleOf(list, row));
    Send(NativeOf(list), WM_LBUTTONUP, 0, MiddleOf(list, row));
  }

  bool IsBoxOpen() { return Dialog() != nullptr; }
  bool IsBoxOver(const Window& of) { return ::GetWindow(Dialog(), GW_OWNER) == NativeOf(of); }
  std::string TextInBox() { return Narrow(TextOf(::GetDlgItem(Dialog(), 0xFFFF))); }
  std::string TitleOfBox() { return Narrow(TextOf(Dialog())); }
  void CloseBox() { ::PostMessageW(Dialog(), WM_SYSCOMMAND, SC_CLOSE, 0); }
  void PressButton(BoxAnswer button) {
    static const std::map<BoxAnswer, int> buttons{{BoxAnswer::kOk, IDOK},
                                                  {BoxAnswer::kCancel, IDCANCEL},
                                                  {BoxAnswer::kYes, IDYES},
                                                  {BoxAnswer::kNo, IDNO}};
    const int id = buttons.at(button);
    ::PostMessageW(Dialog(), WM_COMMAND, static_cast<WPARAM>(id),
                   reinterpret_cast<LPARAM>(::GetDlgItem(Dialog(), id)));
  }

  using Loop = WindowsEventLoop;

  FakeClock clock;
  FakeFiles files{clock};
  WindowsMessageBoxes boxes{host};
  WindowsWindowHost host{loop, files, boxes,
                         [](const std::wstring& native) { return Narrow(native); }};
  Window window;
  int next_top = 10;

 private:
  LPARAM MiddleOf(Control& list, int row) {
    RECT place{};
    Send(NativeOf(list), LB_GETITEMRECT, static_cast<WPARAM>(row),
         reinterpret_cast<LPARAM>(&place));
    return MAKELPARAM(place.left + 5, (place.top + place.bottom) / 2);
  }
};

}  // namespace tarnvale::testing
