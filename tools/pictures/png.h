// Pictures as PNG files, as far as this project needs them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "platform/raster.h"

namespace tarnvale {

/// The bytes of a PNG file with 8 bits of red, green, blue and alpha. The same
/// picture gives the same bytes everywhere.
std::vector<std::uint8_t> EncodePng(const Raster& picture);

/// Reads what EncodePng wrote. None for anything else: other pixel formats,
/// other compression, bytes that were damaged.
std::optional<Raster> DecodePng(const std::vector<std::uint8_t>& bytes);

/// Writes and reads a file. Writing makes the folder, and returns false when the
/// file can't be written; reading gives none for a missing or foreign file.
bool WritePng(const std::filesystem::path& file, const Raster& picture);
std::optional<Raster> ReadPng(const std::filesystem::path& file);

}  // namespace tarnvale
