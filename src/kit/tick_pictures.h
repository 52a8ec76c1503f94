// The two pictures of the check box, drawn in code.
#pragma once

#include "ui/raster.h"

namespace tarnvale {

/// Side of both pictures in logical pixels.
inline constexpr int kTickSidePx = 13;

/// The picture for a display of `scale` device pixels to the logical one; sides
/// of 13 * scale.
Raster TickedPicture(int scale);
Raster ClearPicture(int scale);

}  // namespace tarnvale
