#include "kit/button_colors.h"

#include <gtest/gtest.h>

#include "kit/system_colors.h"

namespace tarnvale::testing {
namespace {

ButtonColorSource Source(int scheme) {
  ButtonColorSource source;
  source.scheme = scheme;
  source.back = 0x806040;
  source.back_over = 0x90A0B0;
  source.fore = 0x102030;
  source.fore_over = 0x405060;
  source.parent_back = 0xA0B0C0;
  source.parent_fore = 0x111213;
  return source;
}

TEST(SystemColors, AreTheDesktopsForAPersonWhoNeedsThem) {
  const Color ours = SystemColor(kColorButtonFace);
  std::array<Color, 31> theirs{};
  theirs[kColorButtonFace] = 0x123456;
  UseSystemColors(theirs);
  EXPECT_EQ(SystemColor(kColorButtonFace), 0x123456U);
  EXPECT_EQ(TranslateColor(SystemColorNumber(kColorButtonFace)), 0x123456U);
  EXPECT_EQ(DeriveButtonColors(Source(1)).face, 0x123456U);
  UseSystemColors(std::nullopt);
  EXPECT_EQ(SystemColor(kColorButtonFace), ours);
}

TEST(ButtonColors, ComeFromTheSystemInScheme1) {
  const ButtonColors colors = DeriveButtonColors(Source(1));
  EXPECT_EQ(colors.face, SystemColor(15));
  EXPECT_EQ(colors.face_over, SystemColor(15));
  EXPECT_EQ(colors.text, SystemColor(18));
  EXPECT_EQ(colors.text_over, SystemColor(18));
  EXPECT_EQ(colors.shadow, SystemColor(16));
  EXPECT_EQ(colors.light, SystemColor(22));
  EXPECT_EQ(colors.highlight, SystemColor(20));
  EXPECT_EQ(colors.dark, SystemColor(21));
  EXPECT_EQ(colors.selection, SystemColor(13));
  EXPECT_EQ(colors.selection_fill, BlendToColor(SystemColor(13), 176));
}

TEST(ButtonColors, ActAsScheme1ForSchemes0And5) {
  for (const int scheme : {0, 5, -1}) {
    const ButtonColors colors = DeriveButtonColors(Source(scheme));
    EXPECT_EQ(colors.face, SystemColor(15)) << scheme;
    EXPECT_EQ(colors.text, SystemColor(18)) << scheme;
    EXPECT_EQ(colors.shadow, SystemColor(16)) << scheme;
  }
}

TEST(ButtonColors, AreDerivedFromTheFaceInScheme2) {
  const ButtonColors colors = DeriveButtonColors(Source(2));
  EXPECT_EQ(colors.face, 0x806040U);
  EXPECT_EQ(colors.face_over, 0x90A0B0U);
  EXPECT_EQ(colors.text, 0x102030U);
  EXPECT_EQ(colors.text_over, 0x405060U);
  EXPECT_EQ(colors.shadow, 0x402000U);     // -64
  EXPECT_EQ(colors.light, 0x9F7F5FU);      // +31
  EXPECT_EQ(colors.highlight, 0xAF8F6FU);  // +47
  EXPECT_EQ(colors.dark, 0x000000U);       // -192
  EXPECT_EQ(colors.selection, 0x000000U);  // -128
  EXPECT_EQ(colors.selection_fill, 0xB0B0B0U);
}

TEST(ButtonColors, AreFixedInScheme3) {
  const ButtonColors colors = DeriveButtonColors(Source(3));
  EXPECT_EQ(colors.face, 0xC0C0C0U);
  EXPECT_EQ(colors.text, 0U);
  EXPECT_EQ(colors.shadow, 0x808080U);
  EXPECT_EQ(colors.light, 0xDFDFDFU);
  EXPECT_EQ(colors.highlight, 0xFFFFFFU);
  EXPECT_EQ(colors.dark, 0U);
  EXPECT_EQ(colors.selection, 0x800000U);
  EXPECT_EQ(colors.selection_fill, 0xC0C0C0U);
}

TEST(ButtonColors, ComeFromTheParentInScheme4) {
  const ButtonColors colors = DeriveButtonColors(Source(4));
  EXPECT_EQ(colors.face, 0xA0B0C0U);
  EXPECT_EQ(colors.face_over, 0xA0B0C0U);
  EXPECT_EQ(colors.text, 0x111213U);
  EXPECT_EQ(colors.shadow, 0x607080U);
  EXPECT_EQ(colors.light, 0xBFCFDFU);
  EXPECT_EQ(colors.highlight, 0xCFDFEFU);
  EXPECT_EQ(colors.dark, 0x000000U);
  EXPECT_EQ(colors.selection, SystemColor(13));
}

TEST(ButtonColors, StepHalfAsFarWithSoftBevel) {
  ButtonColorSource source = Source(2);
  source.soft_bevel = true;
  const ButtonColors colors = DeriveButtonColors(source);
  EXPECT_EQ(colors.shadow, 0x604020U);  // -32
  EXPECT_EQ(colors.light, 0x8F6F4FU);   // +15
  EXPECT_EQ(colors.dark, 0x200000U);    // -96
}

TEST(ButtonColors, OfScheme3StayWithSoftBevel) {
  ButtonColorSource source = Source(3);
  source.soft_bevel = true;
  const ButtonColors colors = DeriveButtonColors(source);
  EXPECT_EQ(colors.shadow, 0x808080U);
  EXPECT_EQ(colors.light, 0xDFDFDFU);
}

TEST(ButtonColors, TranslateSystemColourNumbers) {
  ButtonColorSource source = Source(2);
  source.back = SystemColorNumber(13);
  EXPECT_EQ(DeriveButtonColors(source).face, SystemColor(13));
}

}  // namespace
}  // namespace tarnvale::testing
