// Pictures, pixel by pixel.
#pragma once

#include <optional>

#include "kit/picture.h"
#include "ui/geometry.h"
#include "ui/raster.h"

namespace tarnvale {

struct PictureTreatment {
  /// Pixels of this colour are left out.
  std::optional<Color> mask{};
  /// All pixels take this colour.
  std::optional<Color> silhouette{};
  /// With a silhouette: pixels whose channels add up to more than 384 are left
  /// out. This is how a disabled picture is drawn.
  bool threshold = false;
  bool greyscale = false;
  /// Two parts picture, one part of what lies under it.
  bool blend = false;
};

/// Draws a picture with its upper left corner at `at`, in one pass. The first
/// treatment that applies decides: mask, silhouette, grey, blend, plain copy.
void DrawPicture(Canvas& canvas, const Picture& picture, Point at,
                 const PictureTreatment& treatment);

}  // namespace tarnvale
