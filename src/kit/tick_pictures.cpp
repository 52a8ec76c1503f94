#include "kit/tick_pictures.h"

#include <array>
#include <cstddef>

#include "kit/color_math.h"
#include "ui/palette.h"

namespace tarnvale {
namespace {

constexpr Color kFrame = ToColor(palette::kMark);
constexpr Color kGroundLight = 0xFFFFFF;
constexpr Color kGroundShade = 0xD7DCDC;  // the upper left corner lies in shade
constexpr Color kTick = ToColor(palette::kTick);

// The tick as a polygon, in sixteenths of a logical pixel: down to the foot, up
// to the tip, and back along its lower edge.
struct Node {
  int x, y;
};
constexpr std::array<Node, 6> kTickShape = {
    {{48, 92}, {86, 130}, {160, 50}, {160, 92}, {86, 172}, {48, 134}}};
constexpr int kUnits = 16;
constexpr int kSamples = 4;  // each way, in one device pixel

// Even-odd rule, in whole numbers, so that every machine draws the same tick.
bool IsInTick(int x, int y) {
  bool inside = false;
  for (std::size_t i = 0; i < kTickShape.size(); ++i) {
    const Node a = kTickShape[i];
    const Node b = kTickShape[(i + 1) % kTickShape.size()];
    if ((a.y > y) == (b.y > y)) continue;
    const int cross = (b.x - a.x) * (y - a.y) - (x - a.x) * (b.y - a.y);
    if ((b.y > a.y) == (cross > 0)) inside = !inside;
  }
  return inside;
}

// How much of a device pixel the tick covers, 0 to 255. Samples lie on a grid
// that is finer than the units by `2 * kSamples * scale`.
int TickCoverage(int x, int y, int scale) {
  int hits = 0;
  for (int sy = 0; sy < kSamples; ++sy) {
    for (int sx = 0; sx < kSamples; ++sx) {
      const int fine_x = (2 * (x * kSamples + sx) + 1) * kUnits / (2 * kSamples * scale);
      const int fine_y = (2 * (y * kSamples + sy) + 1) * kUnits / (2 * kSamples * scale);
      if (IsInTick(fine_x, fine_y)) ++hits;
    }
  }
  return hits * 255 / (kSamples * kSamples);
}

Color GroundAt(int x, int y, int side) {
  const int light = (x + y) * 255 / (2 * (side - 1));
  return BlendColors(kGroundLight, kGroundShade, light);
}

Raster DrawBox(int scale, bool ticked) {
  const int side = kTickSidePx * scale;
  Raster picture{side, side, {}};
  picture.pixels.reserve(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      const bool on_frame = x < scale || y < scale || x >= side - scale || y >= side - scale;
      Color color = on_frame ? kFrame : GroundAt(x, y, side);
      if (ticked && !on_frame) color = BlendColors(kTick, color, TickCoverage(x, y, scale));
      picture.pixels.push_back(0xFF000000U | color);
    }
  }
  return picture;
}

}  // namespace

Raster TickedPicture(int scale) {
  return DrawBox(scale, true);
}
Raster ClearPicture(int scale) {
  return DrawBox(scale, false);
}

}  // namespace tarnvale
