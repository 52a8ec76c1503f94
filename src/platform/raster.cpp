#include "platform/raster.h"

#include <algorithm>
#include <cstdlib>

namespace tarnvale {
namespace {

constexpr std::uint32_t kOpaque = 0xFF000000U;

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

}  // namespace tarnvale
