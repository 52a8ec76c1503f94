#include "hosts/windows/surface.h"

#include <algorithm>
#include <cstddef>

#include "base/failure.h"
#include "base/out_of_memory.h"
#include "hosts/windows/blend.h"

namespace tarnvale {

COLORREF ToColorRef(Color color) {
  return color & 0xFFFFFFU;
}

Surface::Surface(const RECT& area) : area_(area), clip_(area), dc_(::CreateCompatibleDC(nullptr)) {
  BITMAPINFO format{};
  format.bmiHeader.biSize = sizeof format.bmiHeader;
  format.bmiHeader.biWidth = area.right - area.left;
  format.bmiHeader.biHeight = area.top - area.bottom;  // from the top
  format.bmiHeader.biPlanes = 1;
  format.bmiHeader.biBitCount = 32;
  format.bmiHeader.biCompression = BI_RGB;
  void* pixels = nullptr;
  bitmap_ = ::CreateDIBSection(dc_, &format, DIB_RGB_COLORS, &pixels, nullptr, 0);
  if (bitmap_ == nullptr) {
    ::DeleteDC(dc_);
    throw OutOfMemory();
  }
  pixels_ = static_cast<std::uint32_t*>(pixels);
  before_ = ::SelectObject(dc_, bitmap_);
  ::SetViewportOrgEx(dc_, -area.left, -area.top, nullptr);
}

Surface::~Surface() {
  ::SelectObject(dc_, before_);
  ::DeleteObject(bitmap_);
  ::DeleteDC(dc_);
}

std::uint32_t* Surface::Row(int y) const {
  ::GdiFlush();
  return pixels_ + static_cast<std::ptrdiff_t>(y - area_.top) * (area_.right - area_.left);
}

void Surface::ClipTo(const RECT& part) {
  ::IntersectRect(&clip_, &area_, &part);
  // The system's regions know no origin.
  HRGN region = ::CreateRectRgn(clip_.left - area_.left, clip_.top - area_.top,
                                clip_.right - area_.left, clip_.bottom - area_.top);
  ::SelectClipRgn(dc_, region);
  ::DeleteObject(region);
}

void Surface::Fill(const RECT& rect, Color color) {
  RECT part{};
  if (::IntersectRect(&part, &rect, &clip_) == 0) return;
  for (int y = part.top; y < part.bottom; ++y) {
    std::fill_n(Row(y) + (part.left - area_.left), part.right - part.left, ToPixel(color));
  }
}

void Surface::Frame(const RECT& rect, Color color) {
  Fill({rect.left, rect.top, rect.right, rect.top + 1}, color);
  Fill({rect.left, rect.bottom - 1, rect.right, rect.bottom}, color);
  Fill({rect.left, rect.top, rect.left + 1, rect.bottom}, color);
  Fill({rect.right - 1, rect.top, rect.right, rect.bottom}, color);
}

void Surface::FrameDotted(const RECT& rect, Color color) {
  const auto dot = [&](LONG x, LONG y) {
    if ((x - rect.left + y - rect.top) % 2 == 0) Fill({x, y, x + 1, y + 1}, color);
  };
  for (LONG x = rect.left; x < rect.right; ++x) {
    dot(x, rect.top);
    dot(x, rect.bottom - 1);
  }
  for (LONG y = rect.top; y < rect.bottom; ++y) {
    dot(rect.left, y);
    dot(rect.right - 1, y);
  }
}

void Surface::FillVertically(const RECT& rect, Color top, Color bottom) {
  const int last = std::max<int>(rect.bottom - rect.top - 1, 1);
  const auto mixed = [&](int from, int to, int step) { return from + (to - from) * step / last; };
  for (int y = rect.top; y < rect.bottom; ++y) {
    const int step = y - rect.top;
    Fill({rect.left, y, rect.right, y + 1}, MakeColor(mixed(RedOf(top), RedOf(bottom), step),
                                                      mixed(GreenOf(top), GreenOf(bottom), step),
                                                      mixed(BlueOf(top), BlueOf(bottom), step)));
  }
}

void Surface::Blend(const std::uint32_t* pixels, int width, int height, int left, int top) {
  const RECT all{left, top, left + width, top + height};
  RECT part{};
  if (::IntersectRect(&part, &all, &clip_) == 0) return;
  for (int y = part.top; y < part.bottom; ++y) {
    const std::uint32_t* source = pixels + static_cast<std::ptrdiff_t>(y - top) * width - left;
    std::uint32_t* row = Row(y) - area_.left;
    for (int x = part.left; x < part.right; ++x) row[x] = Blended(source[x], row[x]);
  }
}

}  // namespace tarnvale
