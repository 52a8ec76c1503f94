#include "shell/program_icon.h"

#include <array>
#include <cmath>

#include "base/failure.h"
#include "ui/sampled_drawing.h"

namespace tarnvale {
namespace {

// The icon is drawn on a field of 32 by 32 units: a blue tile with an open box,
// into which an arrow comes down.
constexpr double kDrawnUnits = 32;

constexpr Color kTileTop = 0xCE8A48;
constexpr Color kTileBottom = 0x945626;
constexpr Color kArrowInk = 0x66D6FF;

bool InArrow(Spot spot) {
  const double from_middle = std::abs(spot.x - 16);
  if (spot.y >= 5 && spot.y <= 12 && from_middle <= 2.5) return true;
  return spot.y > 12 && spot.y <= 19 && from_middle <= 19 - spot.y;
}

bool InBox(Spot spot) {
  const bool outside_edge = spot.x >= 7 && spot.x <= 25 && spot.y >= 17 && spot.y <= 27;
  const bool hollow = spot.x >= 10 && spot.x <= 22 && spot.y < 24;
  return outside_edge && !hollow;
}

Ink InkAt(Spot spot) {
  if (!InRounded(spot, {1, 1}, {31, 31}, 6)) return {};
  if (InArrow(spot)) return kArrowInk;
  if (InBox(spot)) return kWhite;
  // A gentle light from above.
  return Between(kTileTop, kTileBottom, spot.y / kDrawnUnits);
}

}  // namespace

Raster DrawProgramIcon(int size_px) {
  return DrawSampled(size_px, kDrawnUnits / size_px, InkAt);
}

std::vector<Raster> ProgramIcons() {
  static constexpr std::array kSizes = {128, 64, 48, 32, 24, 22, 16};
  std::vector<Raster> icons;
  icons.reserve(kSizes.size());
  for (const int size : kSizes) icons.push_back(DrawProgramIcon(size));
  return icons;
}

std::vector<Raster> IconResource(std::string_view name) {
  if (name != "AAA") throw ProgramError(kResourceNotFound);
  return ProgramIcons();
}

void SetWindowIcon(Window& window, std::string_view resource) {
  window.Icon = IconResource(resource);
}

}  // namespace tarnvale
