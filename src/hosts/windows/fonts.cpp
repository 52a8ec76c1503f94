#include "hosts/windows/fonts.h"

#include <algorithm>
#include <cmath>

#include "hosts/windows/wide.h"

namespace tarnvale {
namespace {

constexpr double kPointsToTheInch = 72;

std::wstring MessageTypeface() {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  const bool is_known = ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, 0, &metrics, 0) != 0;
  return is_known ? metrics.lfMessageFont.lfFaceName : L"Tahoma";
}

}  // namespace

Fonts::~Fonts() {
  for (const auto& [key, font] : fonts_) ::DeleteObject(font);
}

HFONT Fonts::Of(const Font& font) {
  const Key key{font.family, font.size_pt, font.bold, font.italic, font.underline};
  const auto known = fonts_.find(key);
  if (known != fonts_.end()) return known->second;
  static const std::wstring kTypeface = MessageTypeface();
  LOGFONTW wanted{};
  wanted.lfHeight =
      -std::max(1, static_cast<int>(std::lround(font.size_pt * dpi_ / kPointsToTheInch)));
  wanted.lfWeight = font.bold ? FW_BOLD : FW_NORMAL;
  wanted.lfItalic = static_cast<BYTE>(font.italic);
  wanted.lfUnderline = static_cast<BYTE>(font.underline);
  wanted.lfCharSet = DEFAULT_CHARSET;
  const std::wstring family = font.family.empty() ? kTypeface : Wide(font.family);
  family.copy(wanted.lfFaceName, LF_FACESIZE - 1);
  return fonts_.emplace(key, ::CreateFontIndirectW(&wanted)).first->second;
}

HFONT Fonts::OfRole(TextRole role, bool underline) {
  const RoleFont font = FontOfRole(role);
  return Of({.family = {}, .size_pt = font.size_pt, .bold = font.bold, .underline = underline});
}

HFONT Fonts::FixedWidth(double size_pt) {
  return Of({.family = "Courier New", .size_pt = size_pt});
}

}  // namespace tarnvale
