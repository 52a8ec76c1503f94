// The pictures of the popups, drawn by code.
#pragma once

#include <functional>

#include "ui/geometry.h"
#include "ui/raster.h"

namespace tarnvale {

/// Paints the program's emblem at a size in pixels, clear outside its shape.
using EmblemPainter = std::function<Raster(int size_px)>;

/// One picture for displays of one and of two device pixels to the pixel.
struct PicturePair {
  Raster at_1x;
  Raster at_2x;
};

// The alert: files go into the box, and a bar tells that their way can be
// watched.
inline constexpr Size kAlertSize{288, 120};
/// The parts of the picture that its labels lie on.
inline constexpr Rect kAlertTitlePart{0, 0, 288, 18};
inline constexpr Rect kAlertMiddlePart{0, 18, 288, 70};
inline constexpr Rect kAlertBarPart{20, 90, 248, 24};
PicturePair AlertPicture(const EmblemPainter& emblem);

/// The ground of the progress window, with the emblem.
inline constexpr Size kProgressSize{304, 112};
PicturePair ProgressBackdrop(const EmblemPainter& emblem);

/// The closing cross.
inline constexpr Size kCrossSize{20, 20};
PicturePair ClosingCross();

}  // namespace tarnvale
