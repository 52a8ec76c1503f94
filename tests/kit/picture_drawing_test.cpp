#include "kit/picture_drawing.h"

#include <gtest/gtest.h>

namespace tarnvale::testing {
namespace {

constexpr Color kGround = 0x302010;
constexpr Color kMask = 0xC0C0C0;

Picture PictureOf(const std::vector<std::uint32_t>& row) {
  return {Raster{static_cast<int>(row.size()), 1, row}, false};
}

std::vector<Color> Drawn(const Picture& picture, const PictureTreatment& treatment) {
  Canvas canvas({picture.image.width, 1}, 1);
  canvas.FillRect({0, 0, picture.image.width, 1}, kGround);
  DrawPicture(canvas, picture, {0, 0}, treatment);
  std::vector<Color> row;
  for (int x = 0; x < picture.image.width; ++x) row.push_back(*canvas.PixelAt(x, 0));
  return row;
}

using Colors = std::vector<Color>;

TEST(DrawPicture, CopiesPixels) {
  EXPECT_EQ(Drawn(PictureOf({0xFF112233, 0xFFC0C0C0}), {}), (Colors{0x112233, 0xC0C0C0}));
}

TEST(DrawPicture, LeavesOutTheMaskColour) {
  EXPECT_EQ(Drawn(PictureOf({0xFF112233, 0xFFC0C0C0}), {.mask = kMask}),
            (Colors{0x112233, kGround}));
}

TEST(DrawPicture, ComparesTheMaskWithoutRegardToAlphaInABitmap) {
  EXPECT_EQ(Drawn(PictureOf({0x00C0C0C0, 0x00112233}), {.mask = kMask}),
            (Colors{kGround, 0x112233}));
}

TEST(DrawPicture, LeavesOutAnIconsClearPixels) {
  Picture icon = PictureOf({0x00112233, 0xFF112233, 0x7F445566, 0x80445566});
  icon.is_icon = true;
  EXPECT_EQ(Drawn(icon, {}), (Colors{kGround, 0x112233, kGround, 0x445566}));
}

TEST(DrawPicture, GivesAllPixelsTheSilhouettesColour) {
  EXPECT_EQ(Drawn(PictureOf({0xFF000000, 0xFFFFFFFF}), {.silhouette = 0x0000FF}),
            (Colors{0x0000FF, 0x0000FF}));
}

TEST(DrawPicture, LeavesOutBrightPixelsOfASilhouetteWithThreshold) {
  // 128 + 128 + 128 = 384 is drawn, one more is left out.
  EXPECT_EQ(Drawn(PictureOf({0xFF808080, 0xFF808081}), {.silhouette = 0x0000FF, .threshold = true}),
            (Colors{0x0000FF, kGround}));
}

TEST(DrawPicture, LeavesTheMaskOutOfTheSilhouette) {
  EXPECT_EQ(Drawn(PictureOf({0xFFC0C0C0}), {.mask = kMask, .silhouette = 0x0000FF}),
            (Colors{kGround}));
}

TEST(DrawPicture, RoundsTheRedTermOfGreyByItself) {
  // red 18: 5.4 -> 5; green 50: 29.5; blue 0; 34.5 rounds to 34, where one
  // rounding of 34.9 would give 35.
  EXPECT_EQ(Drawn(PictureOf({0xFF003212}), {.greyscale = true}), (Colors{0x222222}));
  // red 25: 7.5 -> 8 (even); green 0; blue 0.
  EXPECT_EQ(Drawn(PictureOf({0xFF000019}), {.greyscale = true}), (Colors{0x080808}));
  // White: 76.5 -> 76, and 76 + 150.45 + 28.05 = 254.5 -> 254.
  EXPECT_EQ(Drawn(PictureOf({0xFFFFFFFF}), {.greyscale = true}), (Colors{0xFEFEFE}));
}

TEST(DrawPicture, BlendsTwoPartsOfThePictureWithOneOfTheGround) {
  // (2 * 0x40 + 0x10) / 3 = 48, (2 * 0x50 + 0x20) / 3 = 64, (2 * 0x61 + 0x30) / 3 = 80 (80.67)
  EXPECT_EQ(Drawn(PictureOf({0xFF615040}), {.blend = true}), (Colors{0x504030}));
}

TEST(DrawPicture, BlendsEachPixelWithTheGroundBelowItself) {
  Canvas canvas({1, 3}, 1);
  canvas.SetPixel(0, 1, 0x303030);
  canvas.SetPixel(0, 2, 0x606060);
  DrawPicture(canvas, {Raster{1, 2, {0xFFFFFFFF, 0xFFFFFFFF}}, false}, {0, 1}, {.blend = true});
  EXPECT_EQ(canvas.PixelAt(0, 1), 0xBABABAU);  // (2 * 0xFF + 0x30) / 3
  EXPECT_EQ(canvas.PixelAt(0, 2), 0xCACACAU);  // (2 * 0xFF + 0x60) / 3
}

TEST(DrawPicture, PrefersGreyOverBlending) {
  EXPECT_EQ(Drawn(PictureOf({0xFFFFFFFF}), {.greyscale = true, .blend = true}), (Colors{0xFEFEFE}));
}

TEST(DrawPicture, IsCutOffAtTheCanvas) {
  Canvas canvas({2, 1}, 1);
  DrawPicture(canvas, PictureOf({0xFF000001, 0xFF000002, 0xFF000003}), {-1, 0}, {});
  EXPECT_EQ(canvas.PixelAt(0, 0), 2U);
  EXPECT_EQ(canvas.PixelAt(1, 0), 3U);
}

}  // namespace
}  // namespace tarnvale::testing
