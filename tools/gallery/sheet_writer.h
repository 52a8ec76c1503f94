// Puts controls and their labels onto a sheet.
#pragma once

#include <string>

#include "kit/system_colors.h"
#include "tools/pictures/bitmap_font.h"
#include "tools/pictures/sheet.h"
#include "ui/owner_drawn.h"

namespace tarnvale {

class SheetWriter {
 public:
  SheetWriter(int width, int height, Color ground = SystemColor(kColorButtonFace))
      : sheet_(MakeSheet(width, height, ground)) {}

  /// Draws a control of a logical size; (x, y) in pixels of the sheet.
  void Put(OwnerDrawn& control, Size size, int scale, int x, int y) {
    Canvas canvas(size, scale);
    control.Paint(canvas, painter_);
    PutOnSheet(sheet_, TakePicture(canvas), x, y);
  }

  void Write(const std::string& text, int x, int y) {
    TextLook look;
    look.color = 0x606060;
    const Size size = painter_.Measure(text, look);
    Canvas canvas(size, 1);
    painter_.Draw(canvas, text, look, {0, 0, size.width_px, size.height_px});
    PutOnSheet(sheet_, TakePicture(canvas), x, y);
  }

  Raster Take() { return std::move(sheet_); }

 private:
  Raster sheet_;
  BitmapTextPainter painter_;
};

}  // namespace tarnvale
