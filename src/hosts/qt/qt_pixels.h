// The program's pixels as Qt's, without copying them.
#pragma once

#include <QImage>

#include <cstdint>

namespace tarnvale {

// Red in the low byte is this order in memory on little-endian machines.
inline constexpr QImage::Format kPixelFormat = QImage::Format_RGBA8888;

/// A view of the pixels of a raster or a canvas: rows from the top, 0xAABBGGRR
/// with straight alpha. They must outlive it. A painter writes into them.
inline QImage ViewOf(std::uint32_t* pixels, int width, int height) {
  return {reinterpret_cast<uchar*>(pixels), width, height, kPixelFormat};
}

/// Likewise; writing into it makes a copy first.
inline QImage ViewOf(const std::uint32_t* pixels, int width, int height) {
  return {reinterpret_cast<const uchar*>(pixels), width, height, kPixelFormat};
}

}  // namespace tarnvale
