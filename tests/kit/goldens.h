// Goldens: pictures that a drawing must match exactly.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "tests/kit/golden_scenes.h"
#include "ui/raster.h"

namespace tarnvale::testing {

std::filesystem::path GoldenFile(const GoldenScene& scene);

/// What differs, in words; none when the drawing is as its golden.
std::optional<std::string> DifferenceFromGolden(const GoldenScene& scene);

/// Golden, drawing and their difference side by side, four times as large. What
/// differs is red on a pale copy of the golden. `golden` may be empty.
Raster SideBySide(const Raster& golden, const Raster& drawing);

}  // namespace tarnvale::testing
