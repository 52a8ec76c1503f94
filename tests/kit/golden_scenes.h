// What the goldens show: one small drawing for each look and state.
#pragma once

#include <string>
#include <vector>

#include "ui/raster.h"

namespace tarnvale::testing {

struct GoldenScene {
  std::string group;  ///< "button-3", "progress", ...
  std::string name;   ///< file name without ending; begins with the group
  Raster picture;
};

/// All groups, in a fixed order.
std::vector<std::string> GoldenGroups();

/// Draws the scenes of one group at 96 dpi with the built-in font.
std::vector<GoldenScene> DrawGroupOfScenes(const std::string& group);

}  // namespace tarnvale::testing
