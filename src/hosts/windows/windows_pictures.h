// The pictures of assets/, which the build renders and puts into the program.
#pragma once

#include <string>

#include "ui/raster.h"

namespace tarnvale {

/// A picture at a size in device pixels, which its own shape keeps within; empty for an
/// empty name. Valid as long as the program runs.
const Raster& PictureNamed(const std::string& name, int width, int height);

}  // namespace tarnvale
