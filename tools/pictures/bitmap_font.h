// A text painter with a small built-in font: the same pixels on every machine,
// so that drawings with text can be compared exactly.
#pragma once

#include <string>
#include <vector>

#include "ui/raster.h"

namespace tarnvale {

/// ASCII; every other byte shows as a question mark. One line of 9 points is 13
/// pixels high, and sizes are whole multiples of that. Bold is one pixel thicker
/// and wider.
class BitmapTextPainter : public TextPainter {
 public:
  Size Measure(const std::string& text, const TextLook& look) override;
  void Draw(Canvas& canvas, const std::string& text, const TextLook& look, Rect area) override;
};

}  // namespace tarnvale
