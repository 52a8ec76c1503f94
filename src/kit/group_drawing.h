// The drawing of the group frame.
#pragma once

#include <cstdint>
#include <string>

#include "kit/visual_theme.h"
#include "ui/raster.h"

namespace tarnvale {

struct GroupLook {
  std::string caption;  ///< with access key marks
  Font font;
  Color back = 0;  ///< none of the colours names a system colour
  Color fore = 0;
  bool enabled = true;
  std::int32_t border_style = 1;
  std::int16_t back_style = 1;
  std::int16_t appearance = 1;
};

/// The caption as it is measured: "&&" counts as the one letter "A", a mark as
/// nothing, and no caption as one blank.
std::string MeasuredCaption(const std::string& caption);

/// Draws the whole frame in the canvas's size. `theme` may be null.
void DrawGroup(const GroupLook& look, Canvas& canvas, TextPainter& text, VisualTheme* theme);

}  // namespace tarnvale
