// The pictures of the user data window's panels, drawn by code.
#pragma once

#include "ui/raster.h"

namespace tarnvale {

enum class PanelPicture { kBrowser, kMail, kSystem };

/// Width and height of a picture, in pixels at 96 dpi.
inline constexpr int kPanelPictureSize = 48;

/// The picture for a display of `scale` device pixels to the pixel, clear around
/// its shapes: a globe, a letter or a window, and an arrow that comes down.
Raster DrawPanelPicture(PanelPicture which, int scale);

}  // namespace tarnvale
