#include "ui/raster.h"

#include <gtest/gtest.h>

#include "tests/support/canvas_rows.h"

namespace tarnvale::testing {
namespace {

constexpr Color kA = 0x0000AA;
constexpr Color kB = 0x00BB00;

Rows Shown(const Canvas& canvas) {
  return RowsOf(canvas, {{kA, 'a'}, {kB, 'b'}});
}

// How many device pixels carry a colour.
int DevicePixelsOf(const Canvas& canvas, Color color) {
  int count = 0;
  for (int i = 0; i < canvas.DeviceWidth() * canvas.DeviceHeight(); ++i) {
    if (canvas.DevicePixels()[i] == (0xFF000000U | color)) ++count;
  }
  return count;
}

TEST(Color, HoldsRedInTheLowByte) {
  EXPECT_EQ(MakeColor(0x11, 0x22, 0x33), 0x332211U);
  EXPECT_EQ(RedOf(0x332211), 0x11);
  EXPECT_EQ(GreenOf(0x332211), 0x22);
  EXPECT_EQ(BlueOf(0x332211), 0x33);
}

TEST(Canvas, BeginsTransparent) {
  EXPECT_EQ(Shown(Canvas({2, 2}, 1)), (Rows{"..", ".."}));
}

TEST(Canvas, StartsAnewByReset) {
  Canvas canvas({2, 2}, 1);
  canvas.FillRect({0, 0, 2, 2}, kA);
  canvas.Reset({3, 1}, 2);
  EXPECT_EQ(Shown(canvas), (Rows{"..."}));
  EXPECT_EQ(canvas.DeviceWidth(), 6);
  EXPECT_EQ(canvas.DeviceHeight(), 2);
}

TEST(Canvas, HasNoNegativeSizeAndAScaleOf1AtLeast) {
  const Canvas canvas({-3, -1}, 0);
  EXPECT_EQ(canvas.WidthPx(), 0);
  EXPECT_EQ(canvas.HeightPx(), 0);
  EXPECT_EQ(canvas.Scale(), 1);
}

TEST(Canvas, MakesABlockOfDevicePixelsOfEachPixel) {
  Canvas canvas({4, 4}, 3);
  canvas.SetPixel(1, 2, kA);
  EXPECT_EQ(DevicePixelsOf(canvas, kA), 9);
  EXPECT_EQ(canvas.DevicePixels()[6 * 12 + 3], 0xFF000000U | kA);
  EXPECT_EQ(canvas.DevicePixels()[8 * 12 + 5], 0xFF000000U | kA);
  EXPECT_EQ(Shown(canvas), (Rows{"....", "....", ".a..", "...."}));
}

TEST(Canvas, ClearsPixels) {
  Canvas canvas({3, 1}, 2);
  canvas.FillRect({0, 0, 3, 1}, kA);
  canvas.ClearPixel(1, 0);
  EXPECT_EQ(Shown(canvas), (Rows{"a.a"}));
  EXPECT_EQ(DevicePixelsOf(canvas, kA), 8);
}

TEST(Canvas, CutsOffWhatLiesOutside) {
  Canvas canvas({3, 2}, 1);
  canvas.FillRect({-5, 1, 6, 9}, kB);
  canvas.FillRect({5, 5, 2, 2}, kB);
  canvas.FillRect({1, 0, -1, 2}, kB);
  canvas.SetPixel(-1, 0, kA);
  canvas.SetPixel(3, 0, kA);
  canvas.SetPixel(0, 2, kA);
  canvas.SetPixel(0, -1, kA);
  EXPECT_EQ(Shown(canvas), (Rows{"...", "b.."}));
  EXPECT_FALSE(canvas.PixelAt(-1, 0).has_value());
  EXPECT_FALSE(canvas.PixelAt(0, 2).has_value());
  EXPECT_FALSE(canvas.PixelAt(0, -1).has_value());
  EXPECT_FALSE(canvas.PixelAt(3, 1).has_value());
}

TEST(Canvas, FramesInsideTheBounds) {
  Canvas canvas({5, 4}, 1);
  canvas.FrameRect({1, 0, 4, 3}, kA);
  EXPECT_EQ(Shown(canvas), (Rows{".aaaa",  //
                                 ".a..a",  //
                                 ".aaaa",  //
                                 "....."}));
}

TEST(Canvas, GivesTheSharedCornersOfAnEdgeToTheSecondColour) {
  Canvas canvas({4, 3}, 1);
  canvas.Edge({0, 0, 4, 3}, kA, kB);
  EXPECT_EQ(Shown(canvas), (Rows{"aaab",  //
                                 "a..b",  //
                                 "bbbb"}));
}

TEST(Canvas, DrawsNoEdgeWithoutSize) {
  Canvas canvas({3, 3}, 1);
  canvas.Edge({1, 1, 0, 2}, kA, kB);
  canvas.Edge({1, 1, 2, -1}, kA, kB);
  EXPECT_EQ(Shown(canvas), (Rows{"...", "...", "..."}));
}

TEST(CanvasLine, IncludesItsStartAndLeavesOutItsEnd) {
  Canvas canvas({5, 3}, 1);
  canvas.Line(1, 0, 4, 0, kA);
  canvas.Line(4, 2, 1, 2, kB);
  EXPECT_EQ(Shown(canvas), (Rows{".aaa.", ".....", "..bbb"}));
}

TEST(CanvasLine, RunsUpAndDown) {
  Canvas canvas({2, 4}, 1);
  canvas.Line(0, 0, 0, 3, kA);
  canvas.Line(1, 3, 1, 0, kB);
  EXPECT_EQ(Shown(canvas), (Rows{"a.", "ab", "ab", ".b"}));
}

TEST(CanvasLine, RunsDiagonally) {
  Canvas canvas({6, 3}, 1);
  canvas.Line(0, 0, 2, 2, kA);
  canvas.Line(5, 0, 2, 3, kB);
  EXPECT_EQ(Shown(canvas), (Rows{"a....b",  //
                                 ".a..b.",  //
                                 "...b.."}));
}

TEST(CanvasLine, RunsSteeply) {
  Canvas canvas({3, 5}, 1);
  canvas.Line(0, 0, 2, 5, kA);
  EXPECT_EQ(Shown(canvas), (Rows{"a..",  //
                                 "a..",  //
                                 ".a.",  //
                                 ".a.",  //
                                 "..a"}));
}

TEST(CanvasLine, RunsUpwardsToTheLeft) {
  Canvas canvas({6, 4}, 1);
  canvas.Line(5, 3, 0, 1, kA);
  EXPECT_EQ(Shown(canvas), (Rows{"......",  //
                                 ".a....",  //
                                 "..aa..",  //
                                 "....aa"}));
}

TEST(CanvasLine, IsNothingWithoutLength) {
  Canvas canvas({2, 1}, 1);
  canvas.Line(1, 0, 1, 0, kA);
  EXPECT_EQ(Shown(canvas), (Rows{".."}));
}

TEST(CanvasEllipse, FillsThePixelsWhoseCentresLieInIt) {
  Canvas canvas({8, 6}, 1);
  canvas.FillEllipse({0, 0, 8, 6}, kA);
  EXPECT_EQ(Shown(canvas), (Rows{"..aaaa..",  //
                                 ".aaaaaa.",  //
                                 "aaaaaaaa",  //
                                 "aaaaaaaa",  //
                                 ".aaaaaa.",  //
                                 "..aaaa.."}));
}

TEST(CanvasEllipse, OutlinesWithoutGapsInsideTheFilling) {
  Canvas canvas({9, 7}, 1);
  canvas.FillEllipse({0, 0, 9, 7}, kA);
  canvas.FrameEllipse({0, 0, 9, 7}, kB);
  EXPECT_EQ(Shown(canvas), (Rows{"..bbbbb..",  //
                                 ".baaaaab.",  //
                                 "baaaaaaab",  //
                                 "baaaaaaab",  //
                                 "baaaaaaab",  //
                                 ".baaaaab.",  //
                                 "..bbbbb.."}));
}

TEST(CanvasEllipse, OutlinesFlatOnesInRuns) {
  Canvas canvas({16, 4}, 1);
  canvas.FillEllipse({0, 0, 16, 4}, kA);
  canvas.FrameEllipse({0, 0, 16, 4}, kB);
  EXPECT_EQ(Shown(canvas), (Rows{"...bbbbbbbbbb...",  //
                                 "bbbaaaaaaaaaabbb",  //
                                 "bbbaaaaaaaaaabbb",  //
                                 "...bbbbbbbbbb..."}));
}

TEST(CanvasEllipse, ClipsEverythingOutsideIt) {
  Canvas canvas({6, 5}, 2);
  canvas.FillRect({0, 0, 6, 5}, kA);
  canvas.ClipToEllipse({1, 1, 4, 3});
  EXPECT_EQ(Shown(canvas), (Rows{"......",  //
                                 "..aa..",  //
                                 ".aaaa.",  //
                                 "..aa..",  //
                                 "......"}));
}

TEST(CanvasEllipse, FillsASquareOfTwo) {
  Canvas canvas({3, 3}, 1);
  canvas.FillEllipse({0, 0, 2, 2}, kA);
  EXPECT_EQ(Shown(canvas), (Rows{"aa.", "aa.", "..."}));
}

TEST(CanvasEllipse, LeavesOutTheRowsInWhichNoCentreLies) {
  Canvas canvas({2, 9}, 1);
  canvas.FillEllipse({0, 0, 2, 9}, kA);
  EXPECT_EQ(Shown(canvas), (Rows{"..", "aa", "aa", "aa", "aa", "aa", "aa", "aa", ".."}));
}

TEST(CanvasEllipse, IsNothingWithoutSize) {
  Canvas canvas({3, 1}, 1);
  canvas.FillEllipse({0, 0, 0, 1}, kA);
  canvas.FrameEllipse({0, 0, 3, 0}, kA);
  EXPECT_EQ(Shown(canvas), (Rows{"..."}));
}

Rows Hatched(int pattern) {
  Canvas canvas({8, 8}, 1);
  canvas.Hatch({0, 0, 8, 8}, pattern, kA, kB);
  return Shown(canvas);
}

TEST(CanvasHatch, HasSixPatterns) {
  EXPECT_EQ(Hatched(0), (Rows{"bbbbbbbb", "bbbbbbbb", "bbbbbbbb", "aaaaaaaa",  //
                              "bbbbbbbb", "bbbbbbbb", "bbbbbbbb", "bbbbbbbb"}));
  EXPECT_EQ(Hatched(1), (Rows(8, "bbbabbbb")));
  EXPECT_EQ(Hatched(2), (Rows{"abbbbbbb", "babbbbbb", "bbabbbbb", "bbbabbbb",  //
                              "bbbbabbb", "bbbbbabb", "bbbbbbab", "bbbbbbba"}));
  EXPECT_EQ(Hatched(3), (Rows{"bbbbbbba", "bbbbbbab", "bbbbbabb", "bbbbabbb",  //
                              "bbbabbbb", "bbabbbbb", "babbbbbb", "abbbbbbb"}));
  EXPECT_EQ(Hatched(4), (Rows{"bbbabbbb", "bbbabbbb", "bbbabbbb", "aaaaaaaa",  //
                              "bbbabbbb", "bbbabbbb", "bbbabbbb", "bbbabbbb"}));
  EXPECT_EQ(Hatched(5), (Rows{"abbbbbba", "babbbbab", "bbabbabb", "bbbaabbb",  //
                              "bbbaabbb", "bbabbabb", "babbbbab", "abbbbbba"}));
}

TEST(CanvasHatch, GoesOnFromAreaToArea) {
  Canvas whole({16, 10}, 1);
  whole.Hatch({0, 0, 16, 10}, 2, kA, kB);
  Canvas parts({16, 10}, 1);
  parts.Hatch({0, 0, 5, 10}, 2, kA, kB);
  parts.Hatch({5, 0, 11, 3}, 2, kA, kB);
  parts.Hatch({5, 3, 99, 99}, 2, kA, kB);
  EXPECT_EQ(Shown(parts), Shown(whole));
}

TEST(CanvasHatch, StaysWithinItsArea) {
  Canvas canvas({4, 5}, 1);
  canvas.Hatch({1, 2, 2, 2}, 0, kA, kB);
  EXPECT_EQ(Shown(canvas), (Rows{"....", "....", ".bb.", ".aa.", "...."}));
}

TEST(CanvasHatch, DrawsNothingForAnUnknownPattern) {
  EXPECT_EQ(Hatched(6), Rows(8, "........"));
  EXPECT_EQ(Hatched(-1), Rows(8, "........"));
}

// a b
// b (clear)
const Raster kPicture{2, 2, {0xFF000000U | kA, 0xFF000000U | kB, 0xFF000000U | kB, 0x7F0000AAU}};

TEST(CanvasBlit, CopiesAndLeavesOutClearPixels) {
  Canvas canvas({4, 3}, 1);
  canvas.Blit(kPicture, {0, 0, 2, 2}, 1, 1, {});
  EXPECT_EQ(Shown(canvas), (Rows{"....", ".ab.", ".b.."}));
}

TEST(CanvasBlit, LeavesOutTheMaskColour) {
  Canvas canvas({2, 2}, 1);
  canvas.Blit(kPicture, {0, 0, 2, 2}, 0, 0, kB);
  EXPECT_EQ(Shown(canvas), (Rows{"a.", ".."}));
}

TEST(CanvasBlit, CopiesPartOfAPicture) {
  Canvas canvas({3, 2}, 1);
  canvas.Blit(kPicture, {1, 0, 1, 1}, 0, 0, {});
  canvas.Blit(kPicture, {-1, 0, 3, 9}, 0, 1, {});
  EXPECT_EQ(Shown(canvas), (Rows{"b..", ".ab"}));
}

TEST(CanvasBlit, IsCutOffAtTheCanvas) {
  Canvas canvas({2, 2}, 1);
  canvas.Blit(kPicture, {0, 0, 2, 2}, -1, 0, {});
  canvas.Blit(kPicture, {0, 0, 2, 2}, 1, 1, {});
  EXPECT_EQ(Shown(canvas), (Rows{"b.", ".a"}));
}

TEST(CanvasTile, RepeatsFromTheAreasCorner) {
  Canvas canvas({6, 4}, 1);
  canvas.Tile(kPicture, {1, 1, 5, 3});
  EXPECT_EQ(Shown(canvas), (Rows{"......",  //
                                 ".ababa",  //
                                 ".b.b.b",  //
                                 ".ababa"}));
}

TEST(CanvasTile, KeepsItsPhaseWhereItIsCutOff) {
  Canvas canvas({3, 1}, 1);
  canvas.Tile(kPicture, {-1, 0, 4, 1});
  EXPECT_EQ(Shown(canvas), (Rows{"bab"}));
}

TEST(CanvasTile, DrawsNothingFromAnEmptyPicture) {
  Canvas canvas({2, 1}, 1);
  canvas.Tile({}, {0, 0, 2, 1});
  EXPECT_EQ(Shown(canvas), (Rows{".."}));
}

TEST(CanvasBlitDevice, CopiesDevicePixelsToALogicalPlace) {
  Canvas canvas({3, 2}, 2);
  canvas.BlitDevice(kPicture, 1, 0);
  const std::uint32_t* pixels = canvas.DevicePixels();
  EXPECT_EQ(pixels[2], 0xFF000000U | kA);
  EXPECT_EQ(pixels[3], 0xFF000000U | kB);
  EXPECT_EQ(pixels[6 + 2], 0xFF000000U | kB);
  EXPECT_EQ(pixels[6 + 3], 0U);
}

TEST(CanvasBlitDevice, IsCutOffAtTheCanvas) {
  Canvas canvas({1, 1}, 1);
  canvas.BlitDevice(kPicture, -1, 0);
  EXPECT_EQ(Shown(canvas), (Rows{"b"}));
  canvas.BlitDevice(kPicture, 0, -1);
  EXPECT_EQ(Shown(canvas), (Rows{"b"}));
}

TEST(Raster, ReadsItsPixelsRowByRow) {
  EXPECT_EQ(kPicture.At(1, 0), 0xFF000000U | kB);
  EXPECT_EQ(kPicture.At(1, 1), 0x7F0000AAU);
  EXPECT_TRUE(Raster{}.Empty());
  EXPECT_FALSE(kPicture.Empty());
}

}  // namespace
}  // namespace tarnvale::testing
