#include "ui/input_rules.h"

#include "ui/controls.h"
#include "ui/owner_drawn.h"
#include "ui/window.h"

namespace tarnvale {

OwnerDrawn* PressedByEnter(const Control& focused) {
  auto* button = dynamic_cast<OwnerDrawn*>(focused.Owner()->DefaultButton.Get());
  const auto* field = dynamic_cast<const TextBox*>(&focused);
  const auto* drawn = dynamic_cast<const OwnerDrawn*>(&focused);
  const bool wants_enter =
      (field != nullptr && field->Kind == TextKind::kMemo) ||
      (drawn != nullptr && drawn->AccessibleKind() == OwnerDrawn::Kind::kButton);
  return button != nullptr && !wants_enter && Window::IsReachable(*button) ? button : nullptr;
}

bool MayTakePress(const Control& control) {
  const Window& window = *control.Owner();
  return window.Frame == WindowFrame::kPopup || !control.TakesFocusByClick() ||
         window.Focused() == &control;
}

std::string DraggedText(const std::string& text, const std::vector<Path>& files) {
  if (files.empty()) return text;
  std::string lines = files.front();
  for (std::size_t i = 1; i < files.size(); ++i) lines += "\n" + files[i];
  return lines;
}

int AllowedEffect(int wanted, int allowed) {
  const int common = wanted & allowed;
  return (common & kCopies) != 0 ? kCopies : common & kMoves;
}

}  // namespace tarnvale
