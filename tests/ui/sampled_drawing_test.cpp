#include "ui/sampled_drawing.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarnvale {
namespace {

TEST(SampledDrawing, APixelIsTheMeanOfItsSamplesAndAsOpaqueAsTheyAreMany) {
  PixelMean mean;
  EXPECT_EQ(mean.Pixel(), 0U) << "clear";
  mean.Add({});
  EXPECT_EQ(mean.Pixel(), 0U);
  for (int i = 0; i < 4; ++i) {
    mean.Add(MakeColor(255, 100, 0));
    mean.Add(MakeColor(0, 101, 0));
  }
  EXPECT_EQ(mean.Pixel(), 0x80000000U | MakeColor(128, 101, 0));
}

TEST(SampledDrawing, TheSamplesLieEvenlyWithinThePixel) {
  double sum_x = 0;
  double sum_y = 0;
  int count = 0;
  VisitSamples(5, 10, 2, [&](Spot spot) {
    ++count;
    sum_x += spot.x;
    sum_y += spot.y;
    EXPECT_GE(spot.x, 10.25);
    EXPECT_LE(spot.x, 11.75);
  });
  EXPECT_EQ(count, 16);
  EXPECT_DOUBLE_EQ(sum_x / count, 11);
  EXPECT_DOUBLE_EQ(sum_y / count, 21);
}

TEST(SampledDrawing, AnEdgeThroughAPixelCoversItsShare) {
  // Everything left of 1.25 units, on pixels half a unit wide.
  const Raster picture =
      DrawSampled(4, 0.5, [](Spot spot) { return spot.x < 1.25 ? Ink(kWhite) : Ink(); });
  ASSERT_EQ(picture.width, 4);
  ASSERT_EQ(picture.height, 4);
  for (int y = 0; y < 4; ++y) {
    EXPECT_EQ(picture.At(1, y), 0xFFFFFFFFU);
    EXPECT_EQ(picture.At(2, y), 0x80FFFFFFU);
    EXPECT_EQ(picture.At(3, y), 0U);
  }
}

TEST(SampledDrawing, RoundedCornersLeaveTheirTipsOut) {
  const Spot low{0, 0};
  const Spot high{10, 6};
  EXPECT_TRUE(InRounded({5, 0.1}, low, high, 2));
  EXPECT_TRUE(InRounded({0.7, 0.7}, low, high, 2));
  EXPECT_FALSE(InRounded({0.5, 0.5}, low, high, 2));
  EXPECT_FALSE(InRounded({9.5, 5.5}, low, high, 2));
  EXPECT_FALSE(InRounded({10.1, 3}, low, high, 2));
}

TEST(SampledDrawing, AStrokeHasRoundEnds) {
  EXPECT_TRUE(OnStroke({5, 0.9}, {0, 0}, {10, 0}, 2));
  EXPECT_FALSE(OnStroke({5, 1.1}, {0, 0}, {10, 0}, 2));
  EXPECT_TRUE(OnStroke({-0.9, 0}, {0, 0}, {10, 0}, 2));
  EXPECT_FALSE(OnStroke({-0.8, 0.8}, {0, 0}, {10, 0}, 2));
}

TEST(SampledDrawing, AColourBetweenTwoIsMixedChannelByChannel) {
  const Color from = MakeColor(0, 100, 255);
  const Color to = MakeColor(100, 0, 255);
  EXPECT_EQ(Between(from, to, 0), from);
  EXPECT_EQ(Between(from, to, 1), to);
  EXPECT_EQ(Between(from, to, 0.25), MakeColor(25, 75, 255));
}

}  // namespace
}  // namespace tarnvale
