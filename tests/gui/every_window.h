// All windows that the program has.
#pragma once

#include <string>
#include <vector>

#include "tests/gui/gui_fixture.h"

namespace tarnvale::testing {

class EveryWindowTest : public GuiTest {
 protected:
  /// Makes the windows that a person hasn't opened yet: those behind the links
  /// of the tools, the conversation, and the popups.
  static void LoadEveryWindow(Program& p) {
    for (Label* link :
         {&p.form.Label34, &p.form.Label42, &p.form.Label56, &p.form.Label46, &p.form.Label41}) {
      link->Clicked.Emit();
    }
    p.Mailer.Get();
    p.popups.LoadAlert();
    p.popups.ProgressPopup();
  }

  /// All windows that there are but the main one and the splash.
  std::vector<Window*> OtherWindows(Program& p) {
    std::vector<Window*> windows;
    for (const auto& native : host.Adopted()) {
      Window& record = native->Record();
      if (&record != &p.form && &record != &p.Splash) windows.push_back(&record);
    }
    return windows;
  }
  static std::string NameOf(const Window& window) {
    return window.Caption.Get().empty() ? "alert" : window.Caption.Get();
  }
};

}  // namespace tarnvale::testing
