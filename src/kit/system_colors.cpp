#include "kit/system_colors.h"

#include <cstddef>

namespace tarnvale {
namespace {

// 0xBBGGRR where the palette has none.
constexpr SystemColorTable kSystemColors = {
    0xC8D0D4,                       //  0 scroll bar
    0x984E00,                       //  1 desktop
    ToColor(palette::kSelection),   //  2 caption of the active window
    0xDF967A,                       //  3 caption of the others
    0xFFFFFF,                       //  4 menu
    0xFFFFFF,                       //  5 window
    0x000000,                       //  6 window frame
    0x000000,                       //  7 menu text
    0x000000,                       //  8 window text
    0xFFFFFF,                       //  9 caption text
    0xC8D0D4,                       // 10 border of the active window
    0xC8D0D4,                       // 11 border of the others
    0x808080,                       // 12 work space
    ToColor(palette::kSelection),   // 13 selection
    0xFFFFFF,                       // 14 selected text
    ToColor(palette::kGround),      // 15 button face
    ToColor(palette::kEdgeDark),    // 16 button shadow
    ToColor(palette::kEdgeDark),    // 17 text that is out of use
    0x000000,                       // 18 button text
    0xF8E4D8,                       // 19 caption text of the others
    0xFFFFFF,                       // 20 highlight edge
    ToColor(palette::kEdgeShadow),  // 21 3-D dark shadow
    0xE2EFF1,                       // 22 3-D light
    0x000000,                       // 23 tool tip text
    ToColor(palette::kTip),         // 24 tool tip
    ToColor(palette::kGround),      // 25 second button face
    0xCC6633,                       // 26 link
    0xFF953D,                       // 27 caption gradient of the active window
    0xEBB99D,                       // 28 caption gradient of the others
    ToColor(palette::kSelection),   // 29 chosen menu row
    ToColor(palette::kGround),      // 30 menu bar
};

SystemColorTable& ColorsInUse() {
  static SystemColorTable colors = kSystemColors;
  return colors;
}

}  // namespace

void UseSystemColors(const std::optional<SystemColorTable>& colors) {
  ColorsInUse() = colors.value_or(kSystemColors);
}

Color SystemColor(int index) {
  if (index < 0 || index >= static_cast<int>(kSystemColors.size())) return kBlack;
  return ColorsInUse()[static_cast<std::size_t>(index)];
}

Color TranslateColor(Color color) {
  constexpr Color kNamesSystemColor = 0x80000000U;
  if ((color & kNamesSystemColor) == 0) return color;
  return SystemColor(static_cast<int>(color & ~kNamesSystemColor));
}

}  // namespace tarnvale
