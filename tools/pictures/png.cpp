#include "tools/pictures/png.h"

#include <png.h>

#include <bit>
#include <cstddef>
#include <system_error>

namespace tarnvale {
namespace {

// A pixel's bytes in memory are red, green, blue, alpha.
static_assert(std::endian::native == std::endian::little);

png_image EmptyImage() {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  return image;
}

}  // namespace

bool WritePng(const std::filesystem::path& file, const Raster& picture) {
  std::error_code failed;
  std::filesystem::create_directories(file.parent_path(), failed);
  png_image image = EmptyImage();
  image.width = static_cast<png_uint_32>(picture.width);
  image.height = static_cast<png_uint_32>(picture.height);
  image.format = PNG_FORMAT_RGBA;
  return png_image_write_to_file(&image, file.c_str(), 0, picture.pixels.data(), 0, nullptr) != 0;
}

std::optional<Raster> ReadPng(const std::filesystem::path& file) {
  png_image image = EmptyImage();
  if (png_image_begin_read_from_file(&image, file.c_str()) == 0) return std::nullopt;
  image.format = PNG_FORMAT_RGBA;
  Raster picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
  picture.pixels.resize(std::size_t{image.width} * image.height);
  if (png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr) == 0) {
    return std::nullopt;
  }
  return picture;
}

}  // namespace tarnvale
