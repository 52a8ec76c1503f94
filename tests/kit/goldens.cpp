#include "tests/kit/goldens.h"

#include <algorithm>

#include "kit/color_math.h"
#include "tools/pictures/png.h"
#include "tools/pictures/sheet.h"

namespace tarnvale::testing {
namespace {

constexpr int kZoom = 4;

std::optional<std::uint32_t> PixelOf(const Raster& picture, int x, int y) {
  if (x >= picture.width || y >= picture.height) return std::nullopt;
  return picture.At(x, y);
}

Raster Enlarged(const Raster& picture) {
  Raster large{picture.width * kZoom, picture.height * kZoom, {}};
  for (int y = 0; y < large.height; ++y) {
    for (int x = 0; x < large.width; ++x) {
      large.pixels.push_back(picture.At(x / kZoom, y / kZoom));
    }
  }
  return large;
}

Raster Difference(const Raster& golden, const Raster& drawing) {
  constexpr Color kDiffers = 0x0000FF;
  Raster difference = MakeSheet(std::max(golden.width, drawing.width),
                                std::max(golden.height, drawing.height), kWhite);
  for (int y = 0; y < difference.height; ++y) {
    for (int x = 0; x < difference.width; ++x) {
      const auto expected = PixelOf(golden, x, y);
      const bool same = expected == PixelOf(drawing, x, y);
      const Color color = same && expected ? BlendToColor(*expected & 0xFFFFFFU, 200) : kDiffers;
      difference.pixels[static_cast<std::size_t>(y * difference.width + x)] = 0xFF000000U | color;
    }
  }
  return difference;
}

}  // namespace

std::filesystem::path GoldenFile(const GoldenScene& scene) {
  return std::filesystem::path(TARNVALE_CONTROL_GOLDENS) / (scene.name + ".png");
}

std::optional<std::string> DifferenceFromGolden(const GoldenScene& scene) {
  const std::optional<Raster> golden = ReadPng(GoldenFile(scene));
  if (!golden) return scene.name + ": there is no golden";
  const Raster& drawing = scene.picture;
  if (golden->width != drawing.width || golden->height != drawing.height) {
    return scene.name + ": another size";
  }
  for (int y = 0; y < drawing.height; ++y) {
    for (int x = 0; x < drawing.width; ++x) {
      if (golden->At(x, y) == drawing.At(x, y)) continue;
      return scene.name + ": differs first at (" + std::to_string(x) + ", " + std::to_string(y) +
             ")";
    }
  }
  return std::nullopt;
}

Raster SideBySide(const Raster& golden, const Raster& drawing) {
  constexpr int kGap = 8;
  constexpr Color kGround = 0x808080;
  const Raster difference = Enlarged(Difference(golden, drawing));
  Raster sheet = MakeSheet(3 * difference.width + 4 * kGap, difference.height + 2 * kGap, kGround);
  PutOnSheet(sheet, Enlarged(golden), kGap, kGap);
  PutOnSheet(sheet, Enlarged(drawing), difference.width + 2 * kGap, kGap);
  PutOnSheet(sheet, difference, 2 * difference.width + 3 * kGap, kGap);
  return sheet;
}

}  // namespace tarnvale::testing
