// The program's icon.
#pragma once

#include <vector>

#include "platform/raster.h"

namespace tarnvale {

/// The icon drawn at one size, in pixels; at least 16.
Raster DrawProgramIcon(int size_px);

/// The icon in all sizes that a desktop asks for, largest first.
std::vector<Raster> ProgramIcons();

}  // namespace tarnvale
