// Pictures as PNG files.
#pragma once

#include <filesystem>
#include <optional>

#include "ui/raster.h"

namespace tarnvale {

/// Writes a file with 8 bits each of red, green, blue and alpha, and makes its
/// folder. False when it can't be written.
bool WritePng(const std::filesystem::path& file, const Raster& picture);

/// Reads a file of any pixel format. None for one that is missing, damaged or no
/// picture.
std::optional<Raster> ReadPng(const std::filesystem::path& file);

}  // namespace tarnvale
