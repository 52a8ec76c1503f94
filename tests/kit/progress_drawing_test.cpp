#include "kit/progress_drawing.h"

#include <gtest/gtest.h>

#include "kit/color_math.h"
#include "kit/system_colors.h"
#include "tests/kit/recording_painter.h"
#include "tests/support/canvas_rows.h"

namespace tarnvale::testing {
namespace {

constexpr Color kBar = 0x804020;

Canvas Drawn(ProgressLook look, Size size) {
  if (look.color == 0) look.color = kBar;
  Canvas canvas(size, 1);
  RecordingPainter text;
  DrawProgress(look, canvas, text);
  return canvas;
}

// The last column that isn't of the ground, in one row; -1 for none.
int BarEnd(const Canvas& canvas, int y, int before, Color ground = kWhite) {
  int end = -1;
  for (int x = 0; x < before; ++x) {
    if (canvas.PixelAt(x, y) != ground) end = x;
  }
  return end;
}

TEST(PolishedBar, IsExactToThePixel) {
  // 12 by 9 at 50 %: H = (9 - 3) / 2 = 3, BarEnd = 0.5 * 8 = 4.
  // Rows 3 to 6 of the bar run from the colour over black at 190 to the colour.
  const std::map<Color, char> legend = {{kWhite, 'W'},   {0xC0C0C0, 'G'}, {0xBEBEBE, 'B'},
                                        {0xEFEFEF, 'E'}, {0xA6ABAC, 'a'}, {0xA7ABAC, 'e'},
                                        {0x7D7E7F, 'd'}, {0x5F3018, '3'}, {0x6A351B, '4'},
                                        {0x753B1D, '5'}, {0x804020, '6'}};
  EXPECT_EQ(RowsOf(Drawn({.percent = 50, .mode = 9}, {12, 9}), legend),
            (Rows{"WedWWWWWWdeW",  //
                  "aWBBBBBBBBWa",  //
                  "dBBEEEEEEBEd",  //
                  "WBE333GGGGEW",  //
                  "WBE444GGGGEW",  //
                  "WBE555GGGGEW",  //
                  "dBB666GGGBEd",  //
                  "aWEEEEEEEEWa",  //
                  "WedWWWWWWdeW"}));
}

TEST(PolishedBar, ShowsItsUpperGradientsWhereTheLowerLeaveThem) {
  // 16 by 23: H = 10. Ground and bar keep the rows 3 to 9 of the upper halves.
  const Canvas canvas = Drawn({.percent = 50, .mode = 9}, {16, 23});
  // Row i of 10 from FF to C0: 255 - 6.3 * i; row 5 of it lies at 7: 223.5 -> 224.
  EXPECT_EQ(canvas.PixelAt(12, 7), MakeColor(224, 224, 224));
  // From CAB0A3 (the colour to white at 150) to 5A2D17 (over black at 180):
  // red 163 - 14 * 5 = 93, green 176 - 13.1 * 5 = 110.5 -> 110, blue 202 - 11.2 * 5 = 146.
  EXPECT_EQ(canvas.PixelAt(5, 7), MakeColor(93, 110, 146));
}

TEST(PolishedBar, IsEmptyAt0AndFullAt100) {
  const Canvas empty = Drawn({.percent = 0, .mode = 9}, {40, 20});
  EXPECT_EQ(BarEnd(empty, 12, 38, 0xC0C0C0), 2);  // the frame's own column
  const Canvas full = Drawn({.percent = 100, .mode = 9}, {40, 20});
  EXPECT_EQ(BarEnd(full, 12, 38, 0xC0C0C0), 37);  // 2 + BarEnd 36 - 1
}

TEST(PolishedBar, RoundsItsEndHalfToEven) {
  // 25 % of 34 = 8.5 -> 8; 75 % of 34 = 25.5 -> 26.
  EXPECT_EQ(BarEnd(Drawn({.percent = 25, .mode = 9}, {38, 20}), 12, 36, 0xC0C0C0), 9);
  EXPECT_EQ(BarEnd(Drawn({.percent = 75, .mode = 9}, {38, 20}), 12, 36, 0xC0C0C0), 27);
}

TEST(PolishedBar, TakesASystemColour) {
  const Canvas canvas =
      Drawn({.percent = 100, .mode = 9, .color = SystemColorNumber(13)}, {40, 21});
  EXPECT_EQ(canvas.PixelAt(20, 18), SystemColor(13));  // the last row of the lower half
}

TEST(Gradient, DrawsOneRowMoreThanItsHeight) {
  Canvas canvas({2, 4}, 1);
  DrawGradient(canvas, 0x000000, 0x040404, {0, 0, 1, 2}, GradientLines::kRows);
  EXPECT_EQ(RowsOf(canvas, {{0x000000, '0'}, {0x020202, '2'}, {0x040404, '4'}}),
            (Rows{"0.", "2.", "4.", ".."}));
}

TEST(Gradient, DrawsOneColumnMoreThanItsWidth) {
  Canvas canvas({4, 2}, 1);
  DrawGradient(canvas, 0x000000, 0x040404, {0, 0, 2, 1}, GradientLines::kColumns);
  EXPECT_EQ(RowsOf(canvas, {{0x000000, '0'}, {0x020202, '2'}, {0x040404, '4'}}),
            (Rows{"024.", "...."}));
}

TEST(Gradient, RoundsHalvesToTheEvenNumber) {
  Canvas canvas({1, 3}, 1);
  // 0.5 -> 0, 1.5 -> 2, 2.5 -> 2 in red, green and blue of the middle row.
  DrawGradient(canvas, MakeColor(0, 1, 2), MakeColor(1, 2, 3), {0, 0, 1, 2}, GradientLines::kRows);
  EXPECT_EQ(canvas.PixelAt(0, 1), MakeColor(0, 2, 2));
}

TEST(Gradient, OfNoHeightIsOneLineOfTheFirstColour) {
  Canvas canvas({1, 2}, 1);
  DrawGradient(canvas, 0x0000FF, 0xFF0000, {0, 0, 1, 0}, GradientLines::kRows);
  EXPECT_EQ(RowsOf(canvas, {{0x0000FF, 'r'}}), (Rows{"r", "."}));
}

TEST(ProgressGround, IsBlackInMode6AndWhiteInAllOthers) {
  for (int mode = -1; mode <= 10; ++mode) {
    const Canvas canvas = Drawn({.percent = 0, .mode = mode}, {60, 20});
    const Color expected = mode == 6 ? kBlack : mode == 9 ? Color{0xC0C0C0} : kWhite;
    EXPECT_EQ(canvas.PixelAt(30, 12), expected) << mode;
  }
}

TEST(ProgressDrawing, DrawsTheGroundAloneForAnUnknownMode) {
  EXPECT_EQ(RowsOf(Drawn({.percent = 50, .mode = 10}, {3, 2}), {{kWhite, 'W'}}),
            (Rows{"WWW", "WWW"}));
}

TEST(PlainBar, FillsItsShareInsideAFrame) {
  const Color frame = BlendToColor(kBar, 100);
  const Color fill = BlendToColor(kBar, 180);
  EXPECT_EQ(
      RowsOf(Drawn({.percent = 50, .mode = 3}, {8, 4}), {{frame, 'F'}, {fill, 'f'}, {kWhite, 'W'}}),
      (Rows{"FFFFFFFF",  //
            "FfffWWWF",  //
            "FfffWWWF",  //
            "FFFFFFFF"}));
}

TEST(PlainBar, KeepsItsFrameWhenFull) {
  const Canvas canvas = Drawn({.percent = 100, .mode = 3}, {8, 4});
  EXPECT_EQ(canvas.PixelAt(7, 1), BlendToColor(kBar, 100));
  EXPECT_EQ(canvas.PixelAt(6, 1), BlendToColor(kBar, 180));
}

TEST(EtchedBar, RunsFrom140To200InsideItsEdge) {
  const Canvas canvas = Drawn({.percent = 100, .mode = 4}, {24, 10});
  EXPECT_EQ(canvas.PixelAt(0, 0), SystemColor(16));
  EXPECT_EQ(canvas.PixelAt(1, 1), SystemColor(20));
  EXPECT_EQ(canvas.PixelAt(2, 2), BlendToColor(kBar, 140));
  EXPECT_EQ(canvas.PixelAt(21, 2), BlendToColor(kBar, 140));
  // Row 5 of 7, from (154, 168, 197) to (206, 213, 227): 191.1, 200.1, 218.4.
  EXPECT_EQ(canvas.PixelAt(2, 7), MakeColor(191, 200, 218));
  EXPECT_EQ(canvas.PixelAt(23, 5), SystemColor(20));
  EXPECT_EQ(canvas.PixelAt(5, 8), SystemColor(16));
}

TEST(HatchedBar, HatchesItsShareOnABlendedGround) {
  const Canvas canvas = Drawn({.percent = 50, .mode = 7, .brush_style = 0}, {101, 20});
  EXPECT_EQ(canvas.PixelAt(20, 11), kBar);  // the line of each eighth row
  EXPECT_EQ(canvas.PixelAt(20, 12), BlendToColor(kBar, 140));
  EXPECT_EQ(BarEnd(canvas, 11, 99), 49);  // 50 / 101 * 101 = 50
}

TEST(HatchedBar, DrawsItsEdgeAloneForAnUnknownBrush) {
  const Canvas canvas = Drawn({.percent = 50, .mode = 7, .brush_style = 6}, {101, 20});
  EXPECT_EQ(canvas.PixelAt(20, 11), kWhite);
  EXPECT_EQ(canvas.PixelAt(0, 0), SystemColor(22));
}

TEST(PatternedBar, DrawsItsEdgeAloneWithoutImage) {
  const Canvas canvas = Drawn({.percent = 80, .mode = 8}, {20, 10});
  for (int y = 2; y < 8; ++y) EXPECT_EQ(BarEnd(canvas, y, 18), 1) << y;
  EXPECT_EQ(canvas.PixelAt(0, 0), SystemColor(16));
  EXPECT_EQ(canvas.PixelAt(19, 9), SystemColor(20));
}

TEST(PatternedBar, FillsItsShareWithTheImage) {
  const Picture image{Raster{2, 1, {0xFF0000FF, 0xFF00FF00}}, false};
  const Canvas canvas = Drawn({.percent = 50, .mode = 8, .image = &image}, {101, 10});
  EXPECT_EQ(canvas.PixelAt(2, 5), 0x0000FFU);
  EXPECT_EQ(canvas.PixelAt(3, 5), 0x00FF00U);
  EXPECT_EQ(BarEnd(canvas, 5, 99), 49);
}

TEST(ChunkedBar, HasChunksOf6AndGapsOf2) {
  const Canvas canvas = Drawn({.percent = 50, .mode = 0}, {46, 12});
  // 20 of 40 reached, three chunks with their gaps: 24.
  std::string row;
  for (int x = 3; x < 30; ++x) row += canvas.PixelAt(x, 6) == kWhite ? '.' : '#';
  EXPECT_EQ(row, "######..######..######.....");
}

TEST(ChunkedBar, HasNoGapsInModes1And2) {
  for (const int mode : {1, 2}) {
    const Canvas canvas = Drawn({.percent = 50, .mode = mode}, {46, 12});
    std::string row;
    for (int x = 3; x < 30; ++x) row += canvas.PixelAt(x, 6) == kWhite ? '.' : '#';
    EXPECT_EQ(row, "####################.......");
  }
}

TEST(ChunkedBar, AlignsItsEndToTwoPixelsInModes1And2) {
  // 25 % of 42 = 10.5 -> 10; 31 % of 42 = 13.02 -> 13, which becomes 14.
  EXPECT_EQ(BarEnd(Drawn({.percent = 25, .mode = 1}, {48, 12}), 6, 46), 12);
  EXPECT_EQ(BarEnd(Drawn({.percent = 31, .mode = 1}, {48, 12}), 6, 46), 16);
}

TEST(ChunkedBar, RunsFromTheBottomUpWhenUpright) {
  const Canvas canvas = Drawn({.percent = 50, .mode = 1, .upright = true}, {12, 46});
  EXPECT_EQ(canvas.PixelAt(6, 10), kWhite);
  EXPECT_NE(canvas.PixelAt(6, 42), kWhite);
}

TEST(ChunkedBar, HasTheFrameOfThePolishedBar) {
  const Canvas chunks = Drawn({.percent = 0, .mode = 0}, {20, 10});
  EXPECT_EQ(chunks.PixelAt(0, 0), kWhite);
  EXPECT_EQ(chunks.PixelAt(0, 1), 0xA6ABACU);
  EXPECT_EQ(chunks.PixelAt(19, 7), 0x7D7E7FU);
  EXPECT_EQ(chunks.PixelAt(17, 7), 0xBEBEBEU);
  EXPECT_EQ(chunks.PixelAt(10, 1), 0xBEBEBEU);
  EXPECT_EQ(chunks.PixelAt(10, 8), 0xEFEFEFU);
}

TEST(ProgressDrawing, DrawsNoBarForANegativePercent) {
  for (int mode = 0; mode <= 9; ++mode) {
    EXPECT_EQ(PixelsOf(Drawn({.percent = -2000000000, .mode = mode}, {40, 20})),
              PixelsOf(Drawn({.percent = 0, .mode = mode}, {40, 20})))
        << mode;
  }
}

TEST(ProgressDrawing, StandsTheSmallestSizes) {
  for (int mode = 0; mode <= 9; ++mode) {
    for (int size = 0; size < 7; ++size) {
      const Canvas canvas = Drawn({.percent = 70, .mode = mode}, {size, size});
      EXPECT_EQ(canvas.WidthPx(), size);
    }
  }
}

}  // namespace
}  // namespace tarnvale::testing
