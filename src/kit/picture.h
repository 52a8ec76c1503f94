// A picture that a control shows.
#pragma once

#include "ui/raster.h"

namespace tarnvale {

struct Picture {
  Raster image;
  /// An icon's clear pixels (alpha below 128) show nothing. In a bitmap every
  /// pixel counts, whatever its alpha.
  bool is_icon = false;

  bool Empty() const { return image.Empty(); }
  bool operator==(const Picture&) const = default;
};

}  // namespace tarnvale
