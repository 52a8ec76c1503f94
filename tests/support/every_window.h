// All windows that the program has.
#pragma once

#include <functional>
#include <string>

#include "app/program.h"

namespace tarnvale::testing {

/// Makes the windows that a person hasn't opened yet: those behind the links of the tools,
/// the conversation, and the popups.
inline void LoadEveryWindow(Program& p) {
  for (Label* link :
       {&p.form.Label34, &p.form.Label42, &p.form.Label56, &p.form.Label46, &p.form.Label41}) {
    link->Clicked.Emit();
  }
  p.Mailer.Get();
  p.popups.LoadAlert();
  p.popups.ProgressPopup();
}

inline std::string NameOf(const Window& window) {
  return window.Caption.Get().empty() ? "alert" : window.Caption.Get();
}

/// Calls `look` on each screen of the main window while that one alone is shown.
inline void ForEachScreen(Program& p, const std::function<void(const std::string& name)>& look) {
  int number = 0;
  for (const Screen shown : kAllScreens) {
    for (const Screen other : kAllScreens) CallHook(p.engine.screens.Hide, other);
    CallHook(p.engine.screens.Show, shown);
    look("screen " + std::to_string(++number));
  }
}

}  // namespace tarnvale::testing
