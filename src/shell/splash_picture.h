// The picture of the program's first seconds.
#pragma once

#include "ui/geometry.h"
#include "ui/raster.h"

namespace tarnvale {

/// Of the whole picture.
inline constexpr Size kSplashSize{440, 260};
/// Where the program's emblem stands in it, and where its name belongs.
inline constexpr Rect kSplashEmblemPlace{36, 32, 80, 80};
inline constexpr Rect kSplashNamePlace{132, 44, 270, 56};

/// The picture for one scale, `scale` device pixels to the logical pixel (at
/// least 1): the emblem above a still lake between hills, opaque throughout.
Raster DrawSplashPicture(int scale);

}  // namespace tarnvale
