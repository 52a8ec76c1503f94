#include "ui/sampled_drawing.h"

#include <algorithm>
#include <cmath>

namespace tarnvale {

double Distance(Spot spot, Spot other) {
  const double x = spot.x - other.x;
  const double y = spot.y - other.y;
  return std::sqrt(x * x + y * y);
}

bool InRounded(Spot spot, Spot upper_left, Spot lower_right, double radius) {
  const double x = std::clamp(spot.x, upper_left.x + radius, lower_right.x - radius);
  const double y = std::clamp(spot.y, upper_left.y + radius, lower_right.y - radius);
  return Distance(spot, {x, y}) <= radius;
}

bool OnStroke(Spot spot, Spot from, Spot to, double width) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double along = ((spot.x - from.x) * dx + (spot.y - from.y) * dy) / (dx * dx + dy * dy);
  const double t = std::clamp(along, 0.0, 1.0);
  return Distance(spot, {from.x + t * dx, from.y + t * dy}) <= width / 2;
}

Color Between(Color from, Color to, double part) {
  const auto mix = [&](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * part)); };
  return MakeColor(mix(RedOf(from), RedOf(to)), mix(GreenOf(from), GreenOf(to)),
                   mix(BlueOf(from), BlueOf(to)));
}

void PixelMean::Add(Ink ink) {
  if (!ink) return;
  ++hits_;
  red_ += RedOf(*ink);
  green_ += GreenOf(*ink);
  blue_ += BlueOf(*ink);
}

std::uint32_t PixelMean::Pixel() const {
  if (hits_ == 0) return 0;
  const auto mean = [&](int sum) { return (sum + hits_ / 2) / hits_; };
  constexpr int kAll = kSamples * kSamples;
  const auto alpha = static_cast<std::uint32_t>((255 * hits_ + kAll / 2) / kAll);
  return alpha << 24U | MakeColor(mean(red_), mean(green_), mean(blue_));
}

}  // namespace tarnvale
