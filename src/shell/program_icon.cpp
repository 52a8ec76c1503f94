#include "shell/program_icon.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "base/failure.h"

namespace tarnvale {
namespace {

// The icon is drawn on a field of 32 by 32 units: a blue tile with an open box,
// into which an arrow comes down.
constexpr double kField = 32;

// Each pixel is the mean of so many samples in each direction.
constexpr int kSamples = 4;

struct Sample {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 0;  // 0 or 1
};

bool InRoundedSquare(double x, double y) {
  constexpr double kLow = 1;
  constexpr double kHigh = 31;
  constexpr double kRadius = 6;
  if (x < kLow || x > kHigh || y < kLow || y > kHigh) return false;
  const double nearest_x = std::clamp(x, kLow + kRadius, kHigh - kRadius);
  const double nearest_y = std::clamp(y, kLow + kRadius, kHigh - kRadius);
  return std::hypot(x - nearest_x, y - nearest_y) <= kRadius;
}

bool InArrow(double x, double y) {
  const double from_middle = std::abs(x - 16);
  if (y >= 5 && y <= 12 && from_middle <= 2.5) return true;
  return y > 12 && y <= 19 && from_middle <= 19 - y;
}

bool InBox(double x, double y) {
  const bool outside_edge = x >= 7 && x <= 25 && y >= 17 && y <= 27;
  const bool hollow = x >= 10 && x <= 22 && y < 24;
  return outside_edge && !hollow;
}

Sample SampleAt(double x, double y) {
  if (!InRoundedSquare(x, y)) return {};
  if (InArrow(x, y)) return {255, 214, 102, 1};
  if (InBox(x, y)) return {255, 255, 255, 1};
  // A gentle light from above.
  const double down = y / kField;
  return {72 - 34 * down, 138 - 52 * down, 206 - 58 * down, 1};
}

std::uint32_t PixelAt(int px, int py, double unit) {
  Sample sum;
  for (int sy = 0; sy < kSamples; ++sy) {
    for (int sx = 0; sx < kSamples; ++sx) {
      const Sample s =
          SampleAt((px + (sx + 0.5) / kSamples) * unit, (py + (sy + 0.5) / kSamples) * unit);
      sum = {sum.red + s.red, sum.green + s.green, sum.blue + s.blue, sum.alpha + s.alpha};
    }
  }
  if (sum.alpha == 0) return 0;
  const auto channel = [&](double value) {
    return static_cast<std::uint32_t>(std::lround(value / sum.alpha));
  };
  const auto alpha =
      static_cast<std::uint32_t>(std::lround(255 * sum.alpha / (kSamples * kSamples)));
  return alpha << 24U | channel(sum.blue) << 16U | channel(sum.green) << 8U | channel(sum.red);
}

}  // namespace

Raster DrawProgramIcon(int size_px) {
  Raster icon{size_px, size_px, {}};
  icon.pixels.reserve(static_cast<std::size_t>(size_px) * static_cast<std::size_t>(size_px));
  const double unit = kField / size_px;
  for (int y = 0; y < size_px; ++y) {
    for (int x = 0; x < size_px; ++x) icon.pixels.push_back(PixelAt(x, y, unit));
  }
  return icon;
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

}  // namespace tarnvale
