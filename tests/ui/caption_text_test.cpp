#include "ui/caption_text.h"

#include <gtest/gtest.h>

namespace tarnvale::testing {
namespace {

TEST(ShownCaption, LeavesOutTheMark) {
  EXPECT_EQ(ShownCaption("&Browse"), "Browse");
}

TEST(ShownCaption, ShowsOneAmpersandForTwo) {
  EXPECT_EQ(ShownCaption("A && B"), "A & B");
}

TEST(ShownCaption, DropsAMarkAtTheEnd) {
  EXPECT_EQ(ShownCaption("Browse&"), "Browse");
}

TEST(AccessKey, IsTheCharacterBehindTheMarkInLowerCase) {
  EXPECT_EQ(AccessKeyOf("E&Xport"), U'x');
}

TEST(AccessKey, IsTheFirstOneThatIsMarked) {
  const CaptionText text = ReadCaption("Save && E&xit &now&");
  EXPECT_EQ(text.shown, "Save & Exit now");
  EXPECT_EQ(text.key, 8U);
}

TEST(AccessKey, IsNoneWithoutMark) {
  EXPECT_EQ(AccessKeyOf("Export"), U'\0');
}

TEST(AccessKey, IsNoneForADoubleAmpersand) {
  EXPECT_EQ(AccessKeyOf("Export && Import"), U'\0');
}

TEST(AccessKey, IsFoundBehindADoubleAmpersand) {
  EXPECT_EQ(AccessKeyOf("Export && &Import"), U'i');
}

TEST(AccessKey, CanBeACharacterOfSeveralBytes) {
  EXPECT_EQ(AccessKeyOf("&\xC3\xA9t\xC3\xA9"), U'\u00E9');
}

TEST(AccessKey, CanBeADigitOrAByteThatIsNoCharacter) {
  EXPECT_EQ(AccessKeyOf("&1 day"), U'1');
  EXPECT_EQ(AccessKeyOf("&\xE9t\xE9"), U'\u00E9');
}

TEST(AccessKey, IsNoneForAMarkAtTheEnd) {
  EXPECT_EQ(AccessKeyOf("Export&"), U'\0');
}

}  // namespace
}  // namespace tarnvale::testing
