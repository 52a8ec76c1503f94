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

constexpr std::uint32_t kSolid = 255;

// One channel of a pixel under a colour of some strength, 0 to 255.
std::uint32_t Mixed(std::uint32_t ground, Color color, std::uint32_t strength, unsigned shift) {
  const std::uint32_t sum = (color >> shift & 0xFFU) * strength +
                            (ground >> shift & 0xFFU) * (kSolid - strength) + kSolid / 2;
  return sum / kSolid << shift;
}

// The mask has a strength for each channel, as the system may smooth by parts of a pixel:
// red in its third byte, which is the lowest of ours.
std::uint32_t Under(std::uint32_t ground, Color color, std::uint32_t mask) {
  const std::uint32_t red = mask >> 16U & 0xFFU;
  const std::uint32_t green = mask >> 8U & 0xFFU;
  const std::uint32_t blue = mask & 0xFFU;
  if (ground >> 24U == kSolid) {
    return kSolid << 24U | Mixed(ground, color, red, 0) | Mixed(ground, color, green, 8) |
           Mixed(ground, color, blue, 16);
  }
  // Where nothing is below it, the whole pixel has one strength.
  const std::uint32_t alpha = std::max(ground >> 24U, (red + green + blue) / 3);
  return alpha << 24U | color;
}

void MixThrough(const Surface& mask, Canvas& canvas, Color color) {
  const RECT area = mask.Area();
  for (int y = area.top; y < area.bottom; ++y) {
    const std::uint32_t* strengths = mask.Row(y);
    std::uint32_t* pixels =
        canvas.DevicePixels() + static_cast<std::ptrdiff_t>(y) * canvas.DeviceWidth();
    for (int x = area.left; x < area.right; ++x) {
      const std::uint32_t strength = strengths[x - area.left] & 0xFFFFFFU;
      if (strength != 0) pixels[x] = Under(pixels[x], color, strength);
    }
  }
}

}  // namespace

WindowsTextPainter::WindowsTextPainter(Fonts& fonts, int scale)
    : fonts_(fonts), scale_(scale), measure_({0, 0, 1, 1}) {}

Size WindowsTextPainter::Measure(const std::string& text, const TextLook& look) {
  HDC dc = measure_.Dc();
  const Selected font(dc, fonts_.Of(look.font));
  TEXTMETRICW metrics{};
  ::GetTextMetricsW(dc, &metrics);
  const ShownText shown = Shown(text, look);
  const auto logical = [this](int device) { return (device + scale_ - 1) / scale_; };
  return {logical(WidthOf(dc, shown.text, shown.text.size())), logical(metrics.tmHeight)};
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
  const Selected font(dc, fonts_.Of(look.font));
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
