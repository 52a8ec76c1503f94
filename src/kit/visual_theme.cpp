#include "kit/visual_theme.h"

namespace tarnvale {

bool IsThemed(VisualTheme& theme) {
  const VisualTheme::SystemVersion version = theme.Version();
  if (version.minor / 10.0 + version.major < 5.1) return false;
  if (!theme.IsAppThemed()) return false;
  return theme.CommonControlsMajor() >= 6;
}

}  // namespace tarnvale
