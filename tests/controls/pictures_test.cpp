// The tools that goldens rest on: PNG files and the built-in font.
#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "tests/support/canvas_rows.h"
#include "tools/pictures/bitmap_font.h"
#include "tools/pictures/deflate.h"
#include "tools/pictures/png.h"
#include "tools/pictures/sheet.h"

namespace tarnvale::testing {
namespace {

using Bytes = std::vector<std::uint8_t>;

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

TEST(Deflate, PacksOneLiteralAsTheFormatSays) {
  // 1 (last) 01 (fixed, low bit first), 'a' = 0x30 + 97 = 10010001, end 0000000:
  // bits 1 10 10010001 0000000 packed from the low bit up.
  EXPECT_EQ(DeflateFixed({'a'}, {}), (Bytes{0x4B, 0x04, 0x00}));
}

TEST(Deflate, UnpacksWhatItPacked) {
  Bytes bytes;
  for (int i = 0; i < 5000; ++i) bytes.push_back(static_cast<std::uint8_t>(i * i / 97));
  bytes.insert(bytes.end(), 2000, 0xFF);
  const Bytes packed = DeflateFixed(bytes, {1, 4, 300});
  EXPECT_EQ(InflateFixed(packed.data(), packed.size()), bytes);
}

TEST(Deflate, PacksRepeats) {
  EXPECT_LT(DeflateFixed(Bytes(10000, 7), {1}).size(), 100U);
}

TEST(Deflate, RefusesAStreamThatWasCut) {
  const Bytes packed = DeflateFixed({'a', 'b', 'c'}, {});
  for (std::size_t size = 0; size < packed.size(); ++size) {
    EXPECT_FALSE(InflateFixed(packed.data(), size).has_value()) << size;
  }
}

TEST(Png, ComesBackAsItWas) {
  const Raster picture = Gradient(37, 200);
  EXPECT_EQ(DecodePng(EncodePng(picture)), picture);
}

TEST(Png, BeginsWithItsHeader) {
  const Bytes file = EncodePng(Gradient(3, 2));
  const Bytes start(file.begin(), file.begin() + 29);
  EXPECT_EQ(start, (Bytes{0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A,  // signature
                          0,    0,   0,   13,  'I',  'H',  'D',  'R',   // header of 13 bytes
                          0,    0,   0,   3,   0,    0,    0,    2,     // 3 by 2
                          8,    6,   0,   0,   0}));                    // RGBA, 8 bits each
}

TEST(Png, RefusesDamagedBytes) {
  const Bytes file = EncodePng(Gradient(5, 5));
  for (std::size_t i = 0; i + 12 < file.size(); ++i) {  // the end chunk isn't read
    Bytes damaged = file;
    damaged[i] ^= 0x10;
    EXPECT_FALSE(DecodePng(damaged).has_value()) << i;
  }
}

TEST(Png, RefusesAFileThatWasCut) {
  const Bytes file = EncodePng(Gradient(5, 5));
  EXPECT_FALSE(DecodePng(Bytes(file.begin(), file.begin() + 40)).has_value());
  EXPECT_FALSE(DecodePng({}).has_value());
}

TEST(Png, IsWrittenToAndReadFromAFile) {
  const std::filesystem::path file =
      std::filesystem::path(::testing::TempDir()) / "tarnvale-png-test" / "picture.png";
  const Raster picture = Gradient(4, 4);
  ASSERT_TRUE(WritePng(file, picture));
  EXPECT_EQ(ReadPng(file), picture);
  std::filesystem::remove_all(file.parent_path());
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
