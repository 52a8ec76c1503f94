// The tools that goldens rest on: PNG files and the built-in font.
#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "tests/hosts/contract/temporary_folder.h"
#include "tests/support/canvas_rows.h"
#include "tools/pictures/bitmap_font.h"
#include "tools/pictures/png.h"
#include "tools/pictures/sheet.h"

namespace tarnvale::testing {
namespace {

Raster Gradient(int width, int height) {
  Raster picture{width, height, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      picture.pixels.push_back(static_cast<std::uint32_t>(y) << 24U |
                               static_cast<std::uint32_t>(x * 7919 + y * 104729));
    }
  }
  return picture;
}

class Png : public ::testing::Test {
 protected:
  TemporaryFolder folder;
  const std::filesystem::path file = folder / "pictures/picture.png";
};

TEST_F(Png, ComesBackAsItWas) {
  const Raster picture = Gradient(37, 200);
  ASSERT_TRUE(WritePng(file, picture));
  EXPECT_EQ(ReadPng(file), picture);
}

TEST_F(Png, NoFileIsNoPicture) {
  EXPECT_FALSE(ReadPng(file).has_value());
}

TEST_F(Png, RefusesAFileThatWasCut) {
  ASSERT_TRUE(WritePng(file, Gradient(37, 200)));
  std::filesystem::resize_file(file, 100);
  EXPECT_FALSE(ReadPng(file).has_value());
}

TEST(Sheet, KeepsItsGroundUnderTransparentPixels) {
  Raster sheet = MakeSheet(2, 1, 0x0000FF);
  PutOnSheet(sheet, Raster{2, 1, {0x00000000, 0xFF00FF00}}, 0, 0);
  EXPECT_EQ(sheet.pixels, (std::vector<std::uint32_t>{0xFF0000FF, 0xFF00FF00}));
}

Rows Written(const std::string& text, const TextLook& look, Size size) {
  Canvas canvas(size, 1);
  BitmapTextPainter painter;
  painter.Draw(canvas, text, look, {0, 0, size.width_px, size.height_px});
  return RowsOf(canvas, {{look.color, '#'}});
}

TEST(BitmapFont, WritesItsGlyphs) {
  EXPECT_EQ(Written("Ti", {}, {8, 13}), (Rows{"........",  //
                                              "........",  //
                                              "........",  //
                                              "#####.#.",  //
                                              "..#.....",  //
                                              "..#...#.",  //
                                              "..#...#.",  //
                                              "..#...#.",  //
                                              "..#...#.",  //
                                              "..#...#.",  //
                                              "........",  //
                                              "........",  //
                                              "........"}));
}

TEST(BitmapFont, UnderlinesTheAccessKey) {
  TextLook look;
  look.access_key_marks = true;
  EXPECT_EQ(Written("&T", look, {5, 13})[11], "#####");
  EXPECT_EQ(Written("&&", look, {7, 13})[11], ".......");
}

TEST(BitmapFont, MeasuresWithoutMarks) {
  BitmapTextPainter painter;
  TextLook look;
  look.access_key_marks = true;
  EXPECT_EQ(painter.Measure("&Ti", look), (Size{8, 13}));
  EXPECT_EQ(painter.Measure("", look), (Size{0, 13}));
  look.font.bold = true;
  EXPECT_EQ(painter.Measure("Ti", look), (Size{10, 13}));
}

TEST(BitmapFont, IsCutOffAtItsArea) {
  Canvas canvas({20, 13}, 1);
  BitmapTextPainter painter;
  painter.Draw(canvas, "TTTT", {}, {0, 0, 3, 13});
  for (int y = 0; y < 13; ++y) {
    for (int x = 3; x < 20; ++x) EXPECT_FALSE(canvas.PixelAt(x, y).has_value());
  }
}

}  // namespace
}  // namespace tarnvale::testing
