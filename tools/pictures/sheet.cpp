#include "tools/pictures/sheet.h"

#include <cstddef>

namespace tarnvale {

Raster TakePicture(const Canvas& canvas) {
  const std::size_t count = static_cast<std::size_t>(canvas.DeviceWidth()) *
                            static_cast<std::size_t>(canvas.DeviceHeight());
  return {canvas.DeviceWidth(),
          canvas.DeviceHeight(),
          {canvas.DevicePixels(), canvas.DevicePixels() + count}};
}

Raster MakeSheet(int width, int height, Color ground) {
  const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  return {width, height, std::vector<std::uint32_t>(count, 0xFF000000U | ground)};
}

void PutOnSheet(Raster& sheet, const Raster& picture, int x, int y) {
  for (int row = 0; row < picture.height; ++row) {
    for (int column = 0; column < picture.width; ++column) {
      const int to_x = x + column;
      const int to_y = y + row;
      if (to_x < 0 || to_y < 0 || to_x >= sheet.width || to_y >= sheet.height) continue;
      const std::uint32_t pixel = picture.At(column, row);
      if (pixel >> 24U < 128) continue;
      sheet.pixels[static_cast<std::size_t>(to_y) * static_cast<std::size_t>(sheet.width) +
                   static_cast<std::size_t>(to_x)] = pixel;
    }
  }
}

}  // namespace tarnvale
