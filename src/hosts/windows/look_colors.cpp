#include "hosts/windows/look_colors.h"

#include <cstddef>

#include "ui/look.h"

namespace tarnvale {

std::optional<SystemColorTable> HighContrastColors() {
  HIGHCONTRASTW contrast{};
  contrast.cbSize = sizeof contrast;
  const bool is_known =
      ::SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) != 0;
  if (!is_known || (contrast.dwFlags & HCF_HIGHCONTRASTON) == 0) return std::nullopt;
  SystemColorTable colors{};
  for (std::size_t i = 0; i < colors.size(); ++i) {
    colors[i] = ::GetSysColor(static_cast<int>(i));  // the same order of bytes
  }
  return colors;
}

LookColors::LookColors()
    : ground(ToColor(palette::kGround)),
      text(ToColor(palette::kText)),
      focus(ToColor(palette::kFocus)),
      link(ToColor(palette::kLink)),
      link_over(ToColor(palette::kLinkOver)),
      field(ToColor(palette::kField)),
      field_frame(ToColor(palette::kFieldFrame)),
      panel_top(ToColor(palette::kPanelTop)),
      panel_bottom(ToColor(palette::kPanelBottom)),
      panel_edge(ToColor(palette::kPanelEdge)),
      panel_bar_from(kWhite),
      panel_bar_to(ToColor(palette::kPanelBar)) {}

LookColors::LookColors(const SystemColorTable& system)
    : ground(system[COLOR_BTNFACE]),
      text(system[COLOR_BTNTEXT]),
      focus(text),
      link(system[COLOR_HOTLIGHT]),
      link_over(link),
      field(system[COLOR_WINDOW]),
      field_frame(system[COLOR_WINDOWTEXT]),
      panel_top(ground),
      panel_bottom(ground),
      panel_edge(text),
      panel_bar_from(ground),
      panel_bar_to(ground),
      text_off_(system[COLOR_GRAYTEXT]) {}

Color LookColors::OfRole(TextRole role, bool enabled) const {
  if (!text_off_) return ToColor(ColorOfRole(role, enabled));
  if (!enabled) return *text_off_;
  return role == TextRole::kLink ? link : text;
}

}  // namespace tarnvale
