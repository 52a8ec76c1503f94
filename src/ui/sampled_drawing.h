// Pictures drawn by code with soft edges: each pixel is the mean of some samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "ui/geometry.h"
#include "ui/raster.h"

namespace tarnvale {

/// A place in a picture, in the units that its shapes are given in.
struct Spot {
  double x = 0;
  double y = 0;
};

/// The colour of a spot; none where nothing is drawn.
using Ink = std::optional<Color>;

/// Samples of a pixel in each direction.
inline constexpr int kSamples = 4;

double Distance(Spot spot, Spot other);
/// Within the rectangle between two corners that are rounded.
bool InRounded(Spot spot, Spot upper_left, Spot lower_right, double radius);
/// Within a stroke with round ends.
bool OnStroke(Spot spot, Spot from, Spot to, double width);

/// The colour at a part of the way from one to another, 0 to 1.
Color Between(Color from, Color to, double part);

/// Tells `visit` the samples of the pixel in column `x` and row `y`, where pixels
/// are `unit` wide.
template <class Visit>
void VisitSamples(int x, int y, double unit, Visit&& visit) {
  for (int row = 0; row < kSamples; ++row) {
    for (int column = 0; column < kSamples; ++column) {
      visit(Spot{(x + (column + 0.5) / kSamples) * unit, (y + (row + 0.5) / kSamples) * unit});
    }
  }
}

/// The mean of a pixel's samples.
class PixelMean {
 public:
  void Add(Ink ink);
  /// 0xAABBGGRR with straight alpha, clear when nothing was drawn.
  std::uint32_t Pixel() const;

 private:
  int hits_ = 0;
  int red_ = 0;
  int green_ = 0;
  int blue_ = 0;
};

/// A square picture of so many pixels, each `unit` wide, of what `ink_at` tells
/// for each spot.
template <class InkAt>
Raster DrawSampled(int size_px, double unit, InkAt&& ink_at) {
  Raster picture{size_px, size_px, {}};
  picture.pixels.reserve(static_cast<std::size_t>(size_px) * static_cast<std::size_t>(size_px));
  for (int y = 0; y < size_px; ++y) {
    for (int x = 0; x < size_px; ++x) {
      PixelMean mean;
      VisitSamples(x, y, unit, [&](Spot spot) { mean.Add(ink_at(spot)); });
      picture.pixels.push_back(mean.Pixel());
    }
  }
  return picture;
}

}  // namespace tarnvale
