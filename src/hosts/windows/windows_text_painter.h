// Text in drawn controls.
#pragma once

#include "hosts/windows/fonts.h"
#include "hosts/windows/surface.h"
#include "ui/raster.h"

namespace tarnvale {

/// The system's text calls clear the alpha of what they draw on: they draw a mask here,
/// through which the colour gets into the canvas.
class WindowsTextPainter final : public TextPainter {
 public:
  /// `scale`: device pixels to the canvas's logical ones. `fonts` must outlive it.
  WindowsTextPainter(Fonts& fonts, int scale);

  Size Measure(const std::string& text, const TextLook& look) override;
  void Draw(Canvas& canvas, const std::string& text, const TextLook& look, Rect area) override;

 private:
  Fonts& fonts_;
  int scale_;
  Surface measure_;  ///< as what is drawn into: others measure otherwise
};

}  // namespace tarnvale
