// Everything that the drawing of a button depends on, and that drawing.
#pragma once

#include <optional>
#include <string>

#include "kit/button_colors.h"
#include "kit/picture.h"
#include "ui/geometry.h"
#include "ui/raster.h"

namespace tarnvale {

/// The type whose ground is what the container shows under the button.
inline constexpr int kTransparentButton = 11;

enum class ButtonState : int { kNormal = 0, kPressed = 2 };

struct ButtonLook {
  int type = 2;  ///< 1 to 14; any other draws the background alone
  ButtonState state = ButtonState::kNormal;
  bool enabled = true;
  bool over = false;
  bool has_focus = false;
  bool is_default = false;
  bool show_focus_rect = true;
  std::string caption;  ///< with access key marks
  Font font;
  int scheme = 1;
  ButtonColors colors;
  int special_effect = 0;
  int picture_position = 0;
  Picture picture_normal;
  Picture picture_over;
  Color mask_color = 0xC0C0C0;
  bool use_mask_color = true;
  bool use_greyscale = false;
  /// What type 11 shows behind its caption, in device pixels; empty: the
  /// container shows through.
  Raster ground;

  bool HasFocusMark() const { return has_focus && show_focus_rect; }
  bool IsMarked() const { return has_focus || is_default; }
};

/// Draws the whole button in the canvas's size; what lies outside the button's
/// region ends up transparent.
void DrawButton(const ButtonLook& look, Canvas& canvas, TextPainter& text);

}  // namespace tarnvale
