// The ten drawings of the progress bar.
#pragma once

#include "kit/picture.h"
#include "ui/raster.h"

namespace tarnvale {

struct ProgressLook {
  int percent = 0;  ///< at most 100
  int mode = 0;     ///< 0 to 9; any other draws the ground and the text alone
  Color color = 0;  ///< may name a system colour
  int brush_style = 4;
  bool upright = false;  ///< modes 0 to 2 run from the bottom up
  bool show_text = false;
  Font font{};
  const Picture* image = nullptr;  ///< pattern of mode 8
};

/// The whole bar in the canvas's size.
void DrawProgress(const ProgressLook& look, Canvas& canvas, TextPainter& text);

/// A gradient in lines of stepwise blended colour: `kRows` one horizontal line
/// per row, row 0 to `rect`'s height inclusive, `kColumns` one vertical line per
/// column, column 0 to the width inclusive. An area without rows (columns) is
/// one line of the first colour.
enum class GradientLines { kRows, kColumns };
void DrawGradient(Canvas& canvas, Color from, Color to, Rect rect, GradientLines lines);

}  // namespace tarnvale
