// Places and sizes. Pixels are those of a 96 dpi display; the host scales.
#pragma once

namespace tarnvale {

/// Twips to the pixel at 96 dpi.
inline constexpr int kTwipsPerPixel = 15;

struct Size {
  int width_px = 0;
  int height_px = 0;
  bool operator==(const Size&) const = default;
};

struct Point {
  int x_px = 0;
  int y_px = 0;
  bool operator==(const Point&) const = default;
};

struct Rect {
  int left_px = 0;
  int top_px = 0;
  int width_px = 0;
  int height_px = 0;

  int RightPx() const { return left_px + width_px; }
  int BottomPx() const { return top_px + height_px; }
  bool Contains(Point p) const {
    return p.x_px >= left_px && p.x_px < RightPx() && p.y_px >= top_px && p.y_px < BottomPx();
  }
  bool operator==(const Rect&) const = default;
};

}  // namespace tarnvale
