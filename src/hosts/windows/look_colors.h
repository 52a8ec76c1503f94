// The colours of what this host draws itself.
#pragma once

#include <optional>

#include "hosts/windows/system_headers.h"
#include "ui/controls.h"
#include "ui/palette.h"

namespace tarnvale {

/// Those of a person who needs high contrast; none for everybody else, for whom the program
/// has its own.
std::optional<SystemColorTable> HighContrastColors();

struct LookColors {
  /// By the program's palette.
  LookColors();
  explicit LookColors(const SystemColorTable& system);

  /// Those of high contrast.
  bool AreTheSystems() const { return text_off_.has_value(); }
  Color OfRole(TextRole role, bool enabled) const;

  Color ground;
  Color text;
  Color focus;
  Color link;
  Color link_over;
  Color field;
  Color field_frame;
  Color panel_top;
  Color panel_bottom;
  Color panel_edge;
  Color panel_bar_from;
  Color panel_bar_to;

 private:
  /// For all texts but links, where their roles make no difference.
  std::optional<Color> text_off_;
};

}  // namespace tarnvale
