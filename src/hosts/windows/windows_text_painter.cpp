#include "hosts/windows/windows_text_painter.h"

#include <algorithm>
#include <string>

#include "hosts/windows/surface.h"
#include "hosts/windows/wide.h"
#include "ui/caption_text.h"

namespace tarnvale {
namespace {

struct ShownText {
  std::wstring text;
  std::size_t key = std::wstring::npos;  ///< where its access key is
};

ShownText Shown(const std::string& text, const TextLook& look) {
  if (!look.access_key_marks) return {.text = Wide(text)};
  const CaptionText caption = ReadCaption(text);
  return {
      .text = Wide(caption.shown),
      .key = caption.key ? Wide(caption.shown.substr(0, *caption.key)).size() : std::wstring::npos};
}

int WidthOf(HDC dc, const std::wstring& text, std::size_t length) {
  SIZE size{};
  ::GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(std::min(length, text.size())), &size);
  return size.cx;
}

int LeftOf(const RECT& area, int width, TextLook::Align align) {
  switch (align) {
    case TextLook::Align::kCenter:
      return area.left + (area.right - area.left - width) / 2;
    case TextLook::Align::kRight:
      return area.right - width;
    case TextLook::Align::kLeft:
      break;
  }
  return area.left;
}

// One pixel under a colour of some strength, 0 to 255. A transparent one has no colour
// of its own.
std::uint32_t Over(std::uint32_t ground, Color color, std::uint32_t strength) {
  const std::uint32_t ground_alpha = ground >> 24U;
  const std::uint32_t rest = ground_alpha * (255 - strength) / 255;
  const std::uint32_t alpha = strength + rest;
  if (alpha == 0) return 0;
  std::uint32_t pixel = alpha << 24U;
  for (unsigned shift = 0; shift < 24; shift += 8) {
    const std::uint32_t mixed =
        ((color >> shift & 0xFFU) * strength + (ground >> shift & 0xFFU) * rest + alpha / 2) /
        alpha;
    pixel |= mixed << shift;
  }
  return pixel;
}

void MixThrough(const Surface& mask, Canvas& canvas, Color color) {
  const RECT area = mask.Area();
  for (int y = area.top; y < area.bottom; ++y) {
    const std::uint32_t* strengths = mask.Row(y);
    std::uint32_t* pixels =
        canvas.DevicePixels() + static_cast<std::ptrdiff_t>(y) * canvas.DeviceWidth();
    for (int x = area.left; x < area.right; ++x) {
      const std::uint32_t strength = strengths[x - area.left] >> 8U & 0xFFU;
      if (strength != 0) pixels[x] = Over(pixels[x], color, strength);
    }
  }
}

}  // namespace

WindowsTextPainter::WindowsTextPainter(Fonts& fonts, int scale)
    : fonts_(fonts), scale_(scale), dc_(::CreateCompatibleDC(nullptr)) {}

WindowsTextPainter::~WindowsTextPainter() {
  ::DeleteDC(dc_);
}

Size WindowsTextPainter::Measure(const std::string& text, const TextLook& look) {
  const Selected font(dc_, fonts_.Of(look.font, Smoothing::kGrey));
  TEXTMETRICW metrics{};
  ::GetTextMetricsW(dc_, &metrics);
  const ShownText shown = Shown(text, look);
  const auto logical = [this](int device) { return (device + scale_ - 1) / scale_; };
  return {logical(WidthOf(dc_, shown.text, shown.text.size())), logical(metrics.tmHeight)};
}

void WindowsTextPainter::Draw(Canvas& canvas, const std::string& text, const TextLook& look,
                              Rect area) {
  const int scale = canvas.Scale();
  const RECT wanted{area.left_px * scale, area.top_px * scale, area.RightPx() * scale,
                    area.BottomPx() * scale};
  const RECT all{0, 0, canvas.DeviceWidth(), canvas.DeviceHeight()};
  RECT seen{};
  if (text.empty() || ::IntersectRect(&seen, &wanted, &all) == 0) return;
  Surface mask(seen);
  HDC dc = mask.Dc();
  const Selected font(dc, fonts_.Of(look.font, Smoothing::kGrey));
  TEXTMETRICW metrics{};
  ::GetTextMetricsW(dc, &metrics);
  const ShownText shown = Shown(text, look);
  const int width = WidthOf(dc, shown.text, shown.text.size());
  const int left = LeftOf(wanted, width, look.align);
  const int top = wanted.top + (wanted.bottom - wanted.top - metrics.tmHeight) / 2;
  ::SetBkMode(dc, TRANSPARENT);
  ::SetTextColor(dc, RGB(255, 255, 255));
  ::ExtTextOutW(dc, left, top, 0, nullptr, shown.text.c_str(), static_cast<UINT>(shown.text.size()),
                nullptr);
  if (shown.key < shown.text.size() && look.show_access_key) {
    const int baseline = top + metrics.tmAscent;
    const RECT line{left + WidthOf(dc, shown.text, shown.key), baseline + scale,
                    left + WidthOf(dc, shown.text, shown.key + 1), baseline + 2 * scale};
    mask.Fill(line, kWhite);
  }
  MixThrough(mask, canvas, look.color);
}

}  // namespace tarnvale
