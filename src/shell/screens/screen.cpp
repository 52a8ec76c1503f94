#include "shell/screens/screen.h"

#include "ui/controls.h"

namespace tarnvale {

void FieldFocus(const Desktop& desktop, const Window& own) {
  const Window* active = desktop.ActiveWindow;
  Control* focused = (active != nullptr ? active : &own)->Focused();
  if (auto* field = dynamic_cast<TextBox*>(focused)) field->SelectAll();
}

}  // namespace tarnvale
