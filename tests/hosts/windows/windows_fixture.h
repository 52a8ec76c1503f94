// Native windows for records, with everything around them.
#pragma once

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

  HWND Native() { return host.NativeOf(window)->Native(); }

  FakeClock clock;
  FakeFiles files{clock};
  WindowsMessageBoxes boxes{host};
  WindowsWindowHost host{loop, files, boxes,
                         [](const std::wstring& native) { return Narrow(native); }};
  Window window;
  int next_top = 10;
};

}  // namespace tarnvale::testing
