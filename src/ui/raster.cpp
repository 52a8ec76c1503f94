#include "ui/raster.h"

#include <algorithm>
#include <cstdlib>

namespace tarnvale {
namespace {

constexpr std::uint32_t kOpaque = 0xFF000000U;

bool IsSeen(std::uint32_t pixel) {
  return pixel >> 24U >= 128;
}

// The pixels of one row that lie in an ellipse: from `first` up to and without
// `end`; empty when both are equal.
struct Span {
  int first = 0;
  int end = 0;
  bool Contains(int x) const { return x >= first && x < end; }
};

// A pixel belongs to the ellipse when its centre does. In doubled coordinates
// around the middle all of this is whole numbers, and symmetric by itself.
Span EllipseRow(Rect bounds, int y) {
  const std::int64_t w = bounds.width_px;
  const std::int64_t h = bounds.height_px;
  if (w <= 0 || y < bounds.top_px || y >= bounds.BottomPx()) return {};
  const std::int64_t dy = 2 * std::int64_t{y - bounds.top_px} + 1 - h;
  const auto is_inside = [&](std::int64_t x) {
    const std::int64_t dx = 2 * x + 1 - w;
    return dx * dx * h * h + dy * dy * w * w <= w * w * h * h;
  };
  std::int64_t x = 0;
  while (2 * x < w && !is_inside(x)) ++x;
  if (2 * x >= w) return {};
  return {bounds.left_px + static_cast<int>(x), bounds.RightPx() - static_cast<int>(x)};
}

bool HatchHits(int pattern, int x, int y) {
  constexpr int kPeriod = 8;
  const bool horizontal = y % kPeriod == 3;
  const bool vertical = x % kPeriod == 3;
  const bool down = (x - y) % kPeriod == 0;
  const bool up = (x + y) % kPeriod == kPeriod - 1;
  switch (pattern) {
    case 0:
      return horizontal;
    case 1:
      return vertical;
    case 2:
      return down;
    case 3:
      return up;
    case 4:
      return horizontal || vertical;
    default:
      return down || up;
  }
}

}  // namespace

Canvas::Canvas(Size size, int scale) {
  Reset(size, scale);
}

void Canvas::Reset(Size size, int scale) {
  size_ = {std::max(size.width_px, 0), std::max(size.height_px, 0)};
  scale_ = std::max(scale, 1);
  pixels_.assign(static_cast<std::size_t>(DeviceWidth()) * static_cast<std::size_t>(DeviceHeight()),
                 0);
}

void Canvas::Put(int x, int y, std::uint32_t pixel) {
  if (x < 0 || y < 0 || x >= size_.width_px || y >= size_.height_px) return;
  const auto stride = static_cast<std::size_t>(DeviceWidth());
  std::uint32_t* row = pixels_.data() + static_cast<std::size_t>(y * scale_) * stride +
                       static_cast<std::size_t>(x * scale_);
  for (int i = 0; i < scale_; ++i, row += stride) std::fill_n(row, scale_, pixel);
}

std::optional<Color> Canvas::PixelAt(int x, int y) const {
  if (x < 0 || y < 0 || x >= size_.width_px || y >= size_.height_px) return std::nullopt;
  const std::uint32_t pixel =
      pixels_[static_cast<std::size_t>(y * scale_) * static_cast<std::size_t>(DeviceWidth()) +
              static_cast<std::size_t>(x * scale_)];
  if (pixel < kOpaque) return std::nullopt;
  return pixel & 0xFFFFFFU;
}

void Canvas::SetPixel(int x, int y, Color color) {
  Put(x, y, kOpaque | color);
}
void Canvas::ClearPixel(int x, int y) {
  Put(x, y, 0);
}

void Canvas::FillRect(Rect rect, Color color) {
  const int left = std::max(rect.left_px, 0);
  const int right = std::min(rect.RightPx(), size_.width_px);
  const int top = std::max(rect.top_px, 0);
  const int bottom = std::min(rect.BottomPx(), size_.height_px);
  if (left >= right) return;
  const auto stride = static_cast<std::size_t>(DeviceWidth());
  for (int y = top * scale_; y < bottom * scale_; ++y) {
    std::fill_n(pixels_.data() + static_cast<std::size_t>(y) * stride + left * scale_,
                (right - left) * scale_, kOpaque | color);
  }
}

void Canvas::FrameRect(Rect rect, Color color) {
  Edge(rect, color, color);
}

void Canvas::Edge(Rect rect, Color top_left, Color bottom_right) {
  const int right = rect.RightPx() - 1;
  const int bottom = rect.BottomPx() - 1;
  if (rect.width_px <= 0 || rect.height_px <= 0) return;
  FillRect({rect.left_px, rect.top_px, rect.width_px, 1}, top_left);
  FillRect({rect.left_px, rect.top_px, 1, rect.height_px}, top_left);
  FillRect({rect.left_px, bottom, rect.width_px, 1}, bottom_right);
  FillRect({right, rect.top_px, 1, rect.height_px}, bottom_right);
}

void Canvas::Line(int x1, int y1, int x2, int y2, Color color) {
  if (y1 == y2) {
    const int left = x1 < x2 ? x1 : x2 + 1;
    FillRect({left, y1, std::abs(x2 - x1), 1}, color);
    return;
  }
  if (x1 == x2) {
    const int top = y1 < y2 ? y1 : y2 + 1;
    FillRect({x1, top, 1, std::abs(y2 - y1)}, color);
    return;
  }
  const int dx = std::abs(x2 - x1);
  const int dy = -std::abs(y2 - y1);
  const int step_x = x1 < x2 ? 1 : -1;
  const int step_y = y1 < y2 ? 1 : -1;
  int error = dx + dy;
  while (x1 != x2 || y1 != y2) {
    SetPixel(x1, y1, color);
    const int twice = 2 * error;
    if (twice >= dy) {
      error += dy;
      x1 += step_x;
    }
    if (twice <= dx) {
      error += dx;
      y1 += step_y;
    }
  }
}

void Canvas::FillEllipse(Rect bounds, Color color) {
  for (int y = bounds.top_px; y < bounds.BottomPx(); ++y) {
    const Span row = EllipseRow(bounds, y);
    FillRect({row.first, y, row.end - row.first, 1}, color);
  }
}

void Canvas::FrameEllipse(Rect bounds, Color color) {
  // On the outline is what lies inside and has a neighbour outside.
  for (int y = bounds.top_px; y < bounds.BottomPx(); ++y) {
    const Span row = EllipseRow(bounds, y);
    const Span above = EllipseRow(bounds, y - 1);
    const Span below = EllipseRow(bounds, y + 1);
    for (int x = row.first; x < row.end; ++x) {
      const bool at_end = x == row.first || x == row.end - 1;
      if (at_end || !above.Contains(x) || !below.Contains(x)) SetPixel(x, y, color);
    }
  }
}

void Canvas::ClipToEllipse(Rect bounds) {
  for (int y = 0; y < size_.height_px; ++y) {
    const Span row = EllipseRow(bounds, y);
    for (int x = 0; x < size_.width_px; ++x) {
      if (!row.Contains(x)) ClearPixel(x, y);
    }
  }
}

void Canvas::Hatch(Rect rect, int pattern, Color color, Color ground) {
  if (pattern < 0 || pattern > 5) return;
  const int left = std::max(rect.left_px, 0);
  const int right = std::min(rect.RightPx(), size_.width_px);
  const int bottom = std::min(rect.BottomPx(), size_.height_px);
  for (int y = std::max(rect.top_px, 0); y < bottom; ++y) {
    for (int x = left; x < right; ++x) SetPixel(x, y, HatchHits(pattern, x, y) ? color : ground);
  }
}

void Canvas::Blit(const Raster& picture, Rect source, int x, int y, std::optional<Color> mask) {
  const int left = std::max(source.left_px, 0);
  const int top = std::max(source.top_px, 0);
  const int right = std::min(source.RightPx(), picture.width);
  const int bottom = std::min(source.BottomPx(), picture.height);
  for (int sy = top; sy < bottom; ++sy) {
    for (int sx = left; sx < right; ++sx) {
      const std::uint32_t pixel = picture.At(sx, sy);
      const Color color = pixel & 0xFFFFFFU;
      if (!IsSeen(pixel) || color == mask) continue;
      SetPixel(x + sx - source.left_px, y + sy - source.top_px, color);
    }
  }
}

void Canvas::Tile(const Raster& picture, Rect rect) {
  if (picture.Empty()) return;
  const int left = std::max(rect.left_px, 0);
  const int right = std::min(rect.RightPx(), size_.width_px);
  const int bottom = std::min(rect.BottomPx(), size_.height_px);
  for (int y = std::max(rect.top_px, 0); y < bottom; ++y) {
    for (int x = left; x < right; ++x) {
      const std::uint32_t pixel =
          picture.At((x - rect.left_px) % picture.width, (y - rect.top_px) % picture.height);
      if (IsSeen(pixel)) SetPixel(x, y, pixel & 0xFFFFFFU);
    }
  }
}

void Canvas::BlitDevice(const Raster& picture, int x, int y) {
  for (int row = 0; row < picture.height; ++row) {
    const int device_y = y * scale_ + row;
    if (device_y < 0 || device_y >= DeviceHeight()) continue;
    std::uint32_t* target = pixels_.data() + static_cast<std::size_t>(device_y) *
                                                 static_cast<std::size_t>(DeviceWidth());
    for (int column = 0; column < picture.width; ++column) {
      const int device_x = x * scale_ + column;
      if (device_x < 0 || device_x >= DeviceWidth()) continue;
      const std::uint32_t pixel = picture.At(column, row);
      if (IsSeen(pixel)) target[device_x] = kOpaque | pixel;
    }
  }
}

}  // namespace tarnvale
