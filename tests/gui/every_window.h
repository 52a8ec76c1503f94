// All windows that the program has.
#pragma once

#include <vector>

#include "tests/gui/gui_fixture.h"
#include "tests/support/every_window.h"

namespace tarnvale::testing {

class EveryWindowTest : public GuiTest {
 protected:
  /// All windows that there are but the main one and the splash.
  std::vector<Window*> OtherWindows(Program& p) {
    std::vector<Window*> windows;
    for (const auto& native : host.Adopted()) {
      Window& record = native->Record();
      if (&record != &p.form && &record != &p.Splash) windows.push_back(&record);
    }
    return windows;
  }
};

}  // namespace tarnvale::testing
