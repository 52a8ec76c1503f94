// Small canvases as rows of letters, so that a test can show what it expects.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "ui/raster.h"

namespace tarnvale::testing {

/// One letter for each logical pixel: the legend's letter for its colour, "." for
/// a transparent one, "?" for any other colour.
inline std::vector<std::string> RowsOf(const Canvas& canvas, const std::map<Color, char>& legend) {
  std::vector<std::string> rows;
  for (int y = 0; y < canvas.HeightPx(); ++y) {
    std::string row;
    for (int x = 0; x < canvas.WidthPx(); ++x) {
      const auto color = canvas.PixelAt(x, y);
      const auto letter = color ? legend.find(*color) : legend.end();
      row += !color ? '.' : letter == legend.end() ? '?' : letter->second;
    }
    rows.push_back(row);
  }
  return rows;
}

/// All of a canvas, to compare it with another one.
inline std::vector<std::uint32_t> PixelsOf(const Canvas& canvas) {
  const std::uint32_t* pixels = canvas.DevicePixels();
  return {pixels, pixels + canvas.DeviceWidth() * canvas.DeviceHeight()};
}

using Rows = std::vector<std::string>;

}  // namespace tarnvale::testing
