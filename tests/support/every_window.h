// All windows that the program has.
#pragma once

#include <functional>
#include <string>
#include <utility>

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
inline void ForEachScreen(Form1& form, const std::function<void(const std::string& name)>& look) {
  const std::pair<GroupBox*, const char*> screens[] = {
      {&form.List.GroupBox1, "list screen"},         {&form.Storage.GroupBox2, "storage screen"},
      {&form.Progress.GroupBox3, "progress screen"}, {&form.Schedule.GroupBox4, "schedule screen"},
      {&form.General.GroupBox5, "general screen"},   {&form.Advanced.GroupBox6, "advanced screen"},
      {&form.Restore.GroupBox15, "restore screen"},
  };
  for (const auto& [shown, name] : screens) {
    for (const auto& other : screens) other.first->Visible = other.first == shown;
    look(name);
  }
}

}  // namespace tarnvale::testing
