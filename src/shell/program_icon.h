// The program's icon.
#pragma once

#include <string_view>
#include <vector>

#include "ui/raster.h"
#include "ui/window.h"

namespace tarnvale {

/// The icon drawn at one size, in pixels; at least 16.
Raster DrawProgramIcon(int size_px);

/// The icon in all sizes that a desktop asks for, largest first.
std::vector<Raster> ProgramIcons();

/// The icon resource of a name, largest size first. "AAA" is the program's own
/// and the only one; any other name raises 326.
std::vector<Raster> IconResource(std::string_view name);

/// Gives a window an icon resource in all its sizes, and with it the boxes and
/// dialogs that it owns. Raises 326.
void SetWindowIcon(Window& window, std::string_view resource);

}  // namespace tarnvale
