#include "userdata/panel_pictures.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

namespace tarnvale {
namespace {

// Each pixel is the mean of so many samples in each direction.
constexpr int kSamples = 4;

// The colours of the program's look.
constexpr Color kSelection = 0xC56A31;
constexpr Color kBand = 0xDD8F5B;
constexpr Color kEdge = 0x8F4A1D;
constexpr Color kFieldFrame = 0xB99D7F;
constexpr Color kLines = 0xEED7C9;
constexpr Color kGold = 0x38B8F4;

struct Spot {
  double x = 0;
  double y = 0;
};

using Ink = std::optional<Color>;  // none where nothing is drawn

Color Between(Color top, Color bottom, double down) {
  const auto mix = [&](int from, int to) {
    return static_cast<int>(std::lround(from + (to - from) * down));
  };
  return MakeColor(mix(RedOf(top), RedOf(bottom)), mix(GreenOf(top), GreenOf(bottom)),
                   mix(BlueOf(top), BlueOf(bottom)));
}

double DistanceTo(Spot spot, Spot other) {
  const double x = spot.x - other.x;
  const double y = spot.y - other.y;
  return std::sqrt(x * x + y * y);
}

bool InRounded(Spot spot, Spot from, Spot to, double radius) {
  const double x = std::clamp(spot.x, from.x + radius, to.x - radius);
  const double y = std::clamp(spot.y, from.y + radius, to.y - radius);
  return DistanceTo(spot, {x, y}) <= radius;
}

bool OnStroke(Spot spot, Spot from, Spot to, double width) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double along = ((spot.x - from.x) * dx + (spot.y - from.y) * dy) / (dx * dx + dy * dy);
  const double t = std::clamp(along, 0.0, 1.0);
  return DistanceTo(spot, {from.x + t * dx, from.y + t * dy}) <= width / 2;
}

Ink GlobeAt(Spot spot) {
  constexpr Spot kMiddle{23, 23};
  constexpr double kRadius = 20;
  const double distance = DistanceTo(spot, kMiddle);
  if (distance > kRadius) return {};
  if (distance > kRadius - 1.2) return kEdge;
  const double x = spot.x - kMiddle.x;
  const double y = spot.y - kMiddle.y;
  // Two circles of latitude, the equator, and three of longitude.
  const bool across = std::abs(y) < 0.7 || std::abs(std::abs(y) - 10) < 0.7;
  const double bulge = std::sqrt(std::max(0.0, kRadius * kRadius - y * y)) / kRadius;
  const bool along = std::abs(x) < 0.7 || std::abs(std::abs(x) - 11 * bulge) < 0.7;
  if (across || along) return kLines;
  return Between(kBand, kSelection, spot.y / kPanelPictureSize);
}

Ink LetterAt(Spot spot) {
  if (!InRounded(spot, {2, 8}, {44, 38}, 3)) return {};
  if (!InRounded(spot, {3.2, 9.2}, {42.8, 36.8}, 2)) return kFieldFrame;
  const bool flap =
      OnStroke(spot, {4, 10}, {23, 26}, 1.6) || OnStroke(spot, {42, 10}, {23, 26}, 1.6);
  if (flap) return kSelection;
  const bool fold =
      OnStroke(spot, {4, 36}, {16, 21.5}, 1.2) || OnStroke(spot, {42, 36}, {30, 21.5}, 1.2);
  return fold ? kLines : kWhite;
}

Ink WindowAt(Spot spot) {
  if (!InRounded(spot, {2, 5}, {44, 40}, 3)) return {};
  if (!InRounded(spot, {3.2, 6.2}, {42.8, 38.8}, 2)) return kEdge;
  if (spot.y < 13) return Between(kBand, kSelection, (spot.y - 6) / 7);
  for (const double top : {18.0, 23.0, 28.0, 33.0}) {
    const double end = top == 33.0 ? 20 : 36;
    if (spot.y >= top && spot.y < top + 2 && spot.x >= 9 && spot.x < end) return kLines;
  }
  return kWhite;
}

// Lies over the lower right corner: something is put away safely.
Ink ArrowAt(Spot spot) {
  constexpr Spot kMiddle{36, 36};
  const double distance = DistanceTo(spot, kMiddle);
  if (distance > 11) return {};
  if (distance > 9.8) return kFieldFrame;
  const double from_middle = std::abs(spot.x - kMiddle.x);
  const bool shaft = spot.y >= 30 && spot.y <= 36 && from_middle <= 2;
  const bool head = spot.y > 36 && spot.y <= 42 && from_middle <= 42 - spot.y;
  return shaft || head ? kGold : kWhite;
}

Ink InkAt(PanelPicture which, Spot spot) {
  if (const Ink arrow = ArrowAt(spot)) return arrow;
  switch (which) {
    case PanelPicture::kBrowser:
      return GlobeAt(spot);
    case PanelPicture::kMail:
      return LetterAt(spot);
    case PanelPicture::kSystem:
      return WindowAt(spot);
  }
  return {};
}

std::uint32_t PixelAt(PanelPicture which, Spot corner, double unit) {
  int hits = 0;
  int red = 0;
  int green = 0;
  int blue = 0;
  for (int sample = 0; sample < kSamples * kSamples; ++sample) {
    const int column = sample % kSamples;
    const int row = sample / kSamples;
    const Ink ink = InkAt(which, {corner.x + (column + 0.5) / kSamples * unit,
                                  corner.y + (row + 0.5) / kSamples * unit});
    if (!ink) continue;
    ++hits;
    red += RedOf(*ink);
    green += GreenOf(*ink);
    blue += BlueOf(*ink);
  }
  if (hits == 0) return 0;
  const auto alpha = static_cast<std::uint32_t>(255 * hits / (kSamples * kSamples));
  return alpha << 24U | MakeColor(red / hits, green / hits, blue / hits);
}

}  // namespace

Raster DrawPanelPicture(PanelPicture which, int scale) {
  const int size = kPanelPictureSize * scale;
  const double unit = 1.0 / scale;
  Raster picture{size, size, {}};
  picture.pixels.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      picture.pixels.push_back(PixelAt(which, {x * unit, y * unit}, unit));
    }
  }
  return picture;
}

}  // namespace tarnvale
