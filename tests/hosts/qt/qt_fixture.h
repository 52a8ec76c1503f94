// What every test of the desktop host needs.
#pragma once

#include <gtest/gtest.h>

#include <QAccessible>
#include <QElapsedTimer>
#include <QTest>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/qt/qt_text.h"
#include "hosts/qt/qt_window_host.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_files.h"
#include "tests/support/run_until.h"

namespace tarnvale {

class QtFixture : public ::testing::Test {
 protected:
  QtFixture() {
    loop.Fault.Listen([](const ProgramError& error) { ADD_FAILURE() << error.what(); });
  }

  /// Lets the loop run until `condition` holds. False when it never did.
  bool WaitFor(const std::function<bool()>& condition) {
    return testing::RunUntil(loop, condition);
  }

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
    ASSERT_TRUE(WaitFor([&] { return Native().isActiveWindow() && Native().isVisible(); }));
  }

  QtWindow& Native() { return *host.NativeOf(window); }
  Peer& PeerOf(Control& control) { return *Native().PeerOf(control); }
  template <class Widget = QWidget>
  Widget& WidgetOf(Control& control) {
    return dynamic_cast<Widget&>(PeerOf(control).Widget());
  }
  std::string NameOf(Control& control) {
    return FromQt(Accessible(control)->text(QAccessible::Name));
  }
  QAccessibleInterface* Accessible(Control& control) {
    return QAccessible::queryAccessibleInterface(&PeerOf(control).FocusWidget());
  }

  testing::FakeClock clock;
  testing::FakeFiles files{clock};
  QtEventLoop loop;
  /// No path can have a name with a backslash.
  QtWindowHost host{loop, files, [](const std::string& native) {
                      return native.find('\\') == std::string::npos ? "C:" + native : Path();
                    }};
  Window window;
  int next_top = 10;
};

}  // namespace tarnvale
