// What every test of the desktop's own parts needs.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "hosts/windows/windows_event_loop.h"
#include "ui/timer.h"

namespace tarnvale::testing {

class WindowsDesktopTest : public ::testing::Test {
 protected:
  WindowsDesktopTest() {
    loop.Fault.Listen([](const ProgramError& error) { ADD_FAILURE() << error.what(); });
  }

  /// Lets the loop run until `condition` holds. False when it never did.
  bool WaitFor(const std::function<bool()>& condition) {
    const DWORD start = ::GetTickCount();
    while (!condition()) {
      if (::GetTickCount() - start > 10000) return false;
      loop.WaitPass();
    }
    return true;
  }

  /// The visible window of a class that this thread has on top of the others; null for none.
  /// Not one behind a box, which may still be above it for a moment.
  static HWND TopWindow(const std::wstring& window_class) {
    struct Search {
      const std::wstring& name;
      HWND found = nullptr;
    } search{window_class};
    ::EnumThreadWindows(::GetCurrentThreadId(), &LookAt<Search>, reinterpret_cast<LPARAM>(&search));
    return search.found;
  }
  /// A box or a dialog of the system's; a menu that has popped up.
  static HWND Dialog() { return TopWindow(L"#32770"); }
  static bool IsMenuOpen() {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    ::GetGUIThreadInfo(::GetCurrentThreadId(), &info);
    return (info.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE)) != 0;
  }

  static std::wstring TextOf(HWND window) {
    std::wstring text(4096, L'\0');
    text.resize(static_cast<std::size_t>(
        ::SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
  }

  WindowsEventLoop loop;

 private:
  template <class Search>
  static BOOL CALLBACK LookAt(HWND window, LPARAM context) {
    auto& search = *reinterpret_cast<Search*>(context);
    wchar_t name[64] = L"";
    ::GetClassNameW(window, name, 64);
    const bool takes_input = ::IsWindowVisible(window) != 0 && ::IsWindowEnabled(window) != 0;
    if (!takes_input || search.name != name) return TRUE;
    search.found = window;
    return FALSE;
  }
};

/// Calls `act` once, from the loop, as soon as `condition` holds.
class Once {
 public:
  Once(EventLoop& loop, std::function<bool()> condition, std::function<void()> act)
      : timer_(loop.Timers(), 10, true) {
    timer_.Tick.Listen([this, condition = std::move(condition), act = std::move(act)] {
      if (!condition()) return;
      timer_.Enabled = false;
      act();
    });
  }
  bool HasActed() const { return !timer_.Enabled; }

 private:
  Timer timer_;
};

}  // namespace tarnvale::testing
