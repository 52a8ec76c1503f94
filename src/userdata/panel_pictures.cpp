#include "userdata/panel_pictures.h"

#include <algorithm>
#include <cmath>

#include "ui/sampled_drawing.h"

namespace tarnvale {
namespace {

// The colours of the program's look.
constexpr Color kSelection = 0xC56A31;
constexpr Color kBand = 0xDD8F5B;
constexpr Color kEdge = 0x8F4A1D;
constexpr Color kFieldFrame = 0xB99D7F;
constexpr Color kLines = 0xEED7C9;
constexpr Color kGold = 0x38B8F4;

Ink GlobeAt(Spot spot) {
  constexpr Spot kMiddle{23, 23};
  constexpr double kRadius = 20;
  const double distance = Distance(spot, kMiddle);
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
  const double distance = Distance(spot, kMiddle);
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

}  // namespace

Raster DrawPanelPicture(PanelPicture which, int scale) {
  return DrawSampled(kPanelPictureSize * scale, 1.0 / scale,
                     [&](Spot spot) { return InkAt(which, spot); });
}

}  // namespace tarnvale
