// Pixels of a canvas, 0xAABBGGRR with straight alpha, over those of the system, 0x00RRGGBB.
#pragma once

#include <cstdint>

#include "ui/raster.h"

namespace tarnvale {

constexpr std::uint32_t ToPixel(Color color) {
  return (color & 0xFFU) << 16U | (color & 0xFF00U) | (color >> 16U & 0xFFU);
}

/// What is seen of `below` with `pixel` over it.
constexpr std::uint32_t Blended(std::uint32_t pixel, std::uint32_t below) {
  constexpr std::uint32_t kOpaque = 255;
  const std::uint32_t alpha = pixel >> 24U;
  if (alpha == 0) return below;
  const std::uint32_t over = ToPixel(pixel);
  if (alpha == kOpaque) return over;
  std::uint32_t mixed = 0;
  for (unsigned shift = 0; shift < 24; shift += 8) {
    const std::uint32_t sum = (over >> shift & 0xFFU) * alpha +
                              (below >> shift & 0xFFU) * (kOpaque - alpha) + kOpaque / 2;
    mixed |= sum / kOpaque << shift;
  }
  return mixed;
}

}  // namespace tarnvale
