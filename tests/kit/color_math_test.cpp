#include "kit/color_math.h"

#include <gtest/gtest.h>

#include "kit/system_colors.h"

namespace tarnvale::testing {
namespace {

TEST(ShiftColor, AddsTheStepToEachChannel) {
  EXPECT_EQ(ShiftColor(0x302010, 5), 0x352515U);
  EXPECT_EQ(ShiftColor(0x302010, -5), 0x2B1B0BU);
}

TEST(ShiftColor, StopsAt255AndAt0) {
  EXPECT_EQ(ShiftColor(0xF080FF, 32), 0xFFA0FFU);
  EXPECT_EQ(ShiftColor(0x10A000, -32), 0x008000U);
}

TEST(ShiftColor, MovesBlueInProportionWhenScaled) {
  // 96 + 96 * 64 / 192 = 128
  EXPECT_EQ(ShiftColor(0x602010, 64, {.scaled = true}), 0x806050U);
  EXPECT_EQ(ShiftColor(0x002010, 64, {.scaled = true}), 0x006050U);
}

TEST(ShiftColor, HalvesTheStepWithSoftBevel) {
  EXPECT_EQ(ShiftColor(0x808080, 48, {.soft_bevel = true}), 0x989898U);
  EXPECT_EQ(ShiftColor(0x808080, -48, {.soft_bevel = true}), 0x686868U);
}

TEST(ShiftColor, HalvesOddStepsTowardsZero) {
  EXPECT_EQ(ShiftColor(0x808080, -5, {.soft_bevel = true}), 0x7E7E7EU);
  EXPECT_EQ(ShiftColor(0x808080, 5, {.soft_bevel = true}), 0x828282U);
  EXPECT_EQ(ShiftColor(0x808080, 1, {.soft_bevel = true}), 0x808080U);
}

TEST(BlendToColor, GivesAPaleForm) {
  // 0 * 79 / 255 + 176 = 176; 128 * 79 / 255 = 39 (39.65) + 176 = 215; 255 -> 255
  EXPECT_EQ(BlendToColor(0xFF8000, 176), 0xFFD7B0U);
}

TEST(BlendToColor, KeepsTheColourAtWeight0AndIsWhiteAt255) {
  EXPECT_EQ(BlendToColor(0x123456, 0), 0x123456U);
  EXPECT_EQ(BlendToColor(0x123456, 255), kWhite);
}

TEST(BlendColors, TakesTheFirstColourAt255AndTheSecondAt0) {
  EXPECT_EQ(BlendColors(0xC0C0C0, kBlack, 255), 0xC0C0C0U);
  EXPECT_EQ(BlendColors(0xC0C0C0, 0x102030, 0), 0x102030U);
}

TEST(BlendColors, RoundsEachChannelToTheNearest) {
  // 0x20 * 180 / 255 = 22.59, 0x40 -> 45.18, 0x80 -> 90.35
  EXPECT_EQ(BlendColors(0x804020, kBlack, 180), 0x5A2D17U);
}

TEST(BlendColors, RoundsTheSumAndNotItsParts) {
  // 204 of 9 and 51 of 12: 7.2 + 2.4 = 9.6
  EXPECT_EQ(BlendColors(0x0C0C0C, 0x090909, 51), 0x0A0A0AU);
}

TEST(BlendColors, TranslatesSystemColours) {
  EXPECT_EQ(BlendColors(SystemColorNumber(kColorButtonFace), kBlack, 255),
            SystemColor(kColorButtonFace));
}

TEST(TranslateColor, LeavesPlainColoursAlone) {
  EXPECT_EQ(TranslateColor(0x12AB34), 0x12AB34U);
}

TEST(TranslateColor, LooksUpTheIndexInTheLowBits) {
  EXPECT_EQ(TranslateColor(0x8000000F), 0xD8E9ECU);
}

TEST(SystemColor, IsTheDesktopsFromTheFirstToTheLast) {
  SystemColorTable theirs{};
  theirs.front() = 0x123456;
  theirs.back() = 0x654321;
  UseSystemColors(theirs);
  EXPECT_EQ(SystemColor(0), 0x123456U);
  EXPECT_EQ(SystemColor(30), 0x654321U);
  UseSystemColors(std::nullopt);
}

TEST(SystemColor, IsBlackForAnUnknownIndex) {
  EXPECT_EQ(SystemColor(-1), kBlack);
  EXPECT_EQ(SystemColor(31), kBlack);
  EXPECT_EQ(TranslateColor(0xFFFFFFFF), kBlack);
}

}  // namespace
}  // namespace tarnvale::testing
