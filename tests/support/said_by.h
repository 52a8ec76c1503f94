// What controls say, and how much room they have for it.
#pragma once

#include <optional>
#include <string>

#include "kit/chameleon_button.h"
#include "kit/check_box.h"
#include "ui/caption_text.h"
#include "ui/controls.h"
#include "ui/look.h"
#include "ui/window.h"

namespace tarnvale::testing {

// Room that a control's own signs take of its width, at 96 dpi.
inline constexpr int kMark = 18;        // the ring or the box before a text
inline constexpr int kButtonFrame = 6;  // both sides
inline constexpr int kPanelHeading = 15;

struct Said {
  std::string text;
  RoleFont font;
  int width_px = 0;  ///< at 96 dpi, as the height
  int height_px = 0;
  bool wraps = false;
};

/// None for one without a text of its own, or whose text may be cut: a fact that is too long
/// is shown in part, and whole as a tool tip.
inline std::optional<Said> SaidBy(const Placement& placement) {
  const Rect& place = placement.place;
  const auto marked = [&](const std::string& caption, RoleFont font) {
    return Said{ShownCaption(caption), font, place.width_px - kMark, place.height_px};
  };
  if (const auto* label = dynamic_cast<Label*>(placement.control)) {
    if (label->Role == TextRole::kValue) return std::nullopt;
    const int bar = label->Role == TextRole::kHeading && placement.container != nullptr &&
                            dynamic_cast<PictureBox*>(placement.container) != nullptr
                        ? kPanelHeading
                        : 0;
    const std::string text = label->Shown();
    return Said{text, FontOfRole(label->Role), place.width_px - bar, place.height_px,
                label->Wrap || text.find('\n') != std::string::npos};
  }
  if (const auto* button = dynamic_cast<chameleonButton*>(placement.control)) {
    const Font font = button->Font;
    return Said{ShownCaption(button->Caption),
                {.size_pt = font.size_pt, .bold = font.bold},
                place.width_px - kButtonFrame,
                place.height_px};
  }
  if (const auto* box = dynamic_cast<CheckBox*>(placement.control)) {
    const Font font = box->Font;
    return marked(box->Caption, {.size_pt = font.size_pt, .bold = font.bold});
  }
  if (const auto* option = dynamic_cast<OptionButton*>(placement.control)) {
    return marked(option->Caption, FontOfRole(TextRole::kBody));
  }
  if (const auto* check = dynamic_cast<CheckButton*>(placement.control)) {
    return marked(check->Caption, FontOfRole(TextRole::kBody));
  }
  return std::nullopt;
}

}  // namespace tarnvale::testing
