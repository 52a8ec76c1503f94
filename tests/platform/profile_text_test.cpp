#include "platform/profile_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnvale {
namespace {

TEST(ProfileTextTest, WhatNobodyReplacedComesBackByteForByte) {
  for (const std::string text :
       {"", "\n", "\r\n", "no end", "a=1\r\n[x]\nb = 2 \r\n\r\n;c\n[x]\n[", "\xEF\xBB\xBF",
        "\xEF\xBB\xBF[a]", "[a]\r\r\nb=1\r", "[a]b=1\n[]\n=\n"}) {
    EXPECT_EQ(ProfileText(text).Bytes(), text);
  }
}

TEST(ProfileTextTest, ZeroBytesComeBack) {
  const std::string text(
      "[a]\nb=1\0"
      "2\n\0",
      11);
  EXPECT_EQ(ProfileText(text).Bytes(), text);
}

TEST(ProfileTextTest, AnEmptyProfileGrowsWithCarriageReturns) {
  ProfileText text;
  EXPECT_TRUE(text.Set("A", "x", "1"));
  EXPECT_TRUE(text.Set("A", "y", ""));
  EXPECT_TRUE(text.Set("B", "z", "2"));
  EXPECT_EQ(text.Bytes(), "[A]\r\nx=1\r\ny=\r\n[B]\r\nz=2\r\n");
}

TEST(ProfileTextTest, SetReturnsWhetherAnythingChanged) {
  ProfileText text("[A]\nx = 1\n");
  EXPECT_TRUE(text.Holds("a", "X", "1"));
  EXPECT_FALSE(text.Set("A", "x", "1"));
  EXPECT_FALSE(text.Holds("A", "x", "2"));
  EXPECT_TRUE(text.Set("A", "x", "2"));
  EXPECT_FALSE(text.Holds("A", "y", ""));
}

TEST(ProfileTextTest, AQuotedValueIsReplacedByThePlainOne) {
  ProfileText text("[A]\nx=\"1\"\n");
  EXPECT_TRUE(text.Set("A", "x", "1"));
  EXPECT_EQ(text.Bytes(), "[A]\nx=1\n");
}

TEST(ProfileTextTest, NewNamesAreWrittenWithoutBlanksAround) {
  ProfileText text;
  text.Set(" A ", " x ", "1");
  EXPECT_EQ(text.Bytes(), "[A]\r\nx=1\r\n");
  EXPECT_EQ(text.Value("A", "x"), "1");
}

TEST(ProfileTextTest, AnEmptySectionGetsItsFirstKeyBehindItsHeader) {
  ProfileText text("[A]\n\n[B]\nx=1\n");
  text.Set("A", "y", "2");
  EXPECT_EQ(text.Bytes(), "[A]\ny=2\n\n[B]\nx=1\n");
}

TEST(ProfileTextTest, KeysOfARepeatedSectionBelongToNobody) {
  ProfileText text("[A]\nx=1\n[B]\n[A]\ny=2\n");
  EXPECT_FALSE(text.Value("A", "y").has_value());
  text.Set("A", "y", "3");
  EXPECT_EQ(text.Bytes(), "[A]\nx=1\ny=3\n[B]\n[A]\ny=2\n");
}

TEST(ProfileTextTest, AMovedProfileGoesOn) {
  ProfileText first("[A]\nx=1\n");
  ProfileText second = std::move(first);
  second.Set("A", "y", "2");
  second.Set("B", "z", "3");
  EXPECT_EQ(second.Bytes(), "[A]\nx=1\ny=2\n[B]\nz=3\n");
}

TEST(ProfileTextTest, KeysCanBeAddedToASectionInTheMiddle) {
  ProfileText text("[A]\n[B]\nx=1\n");
  std::string expected = "[A]\n";
  for (int i = 0; i < 1000; ++i) {
    text.Set("A", std::to_string(i), "v");
    expected += std::to_string(i) + "=v\n";
  }
  EXPECT_EQ(text.Bytes(), expected + "[B]\nx=1\n");
}

TEST(ProfileTextTest, AQuoteAloneIsAValue) {
  EXPECT_EQ(ProfileText("[S]\nk=\"\n").Value("S", "k"), "\"");
}

TEST(ProfileTextTest, TwoQuotesAreAnEmptyValue) {
  EXPECT_EQ(ProfileText("[S]\nk=\"\"\n").Value("S", "k"), "");
}

TEST(ProfileTextTest, AKeyCannotBeginLikeACommentOrASection) {
  EXPECT_FALSE(ProfileText::CanHold("S", ";k", "v"));
  EXPECT_FALSE(ProfileText::CanHold("S", "[k", "v"));
  EXPECT_TRUE(ProfileText::CanHold("S", "k;", "v"));
}

TEST(ProfileTextTest, NothingThatIsHeldHasALineEnd) {
  EXPECT_FALSE(ProfileText::CanHold("S\n", "k", "v"));
  EXPECT_FALSE(ProfileText::CanHold("S", "k\r", "v"));
  EXPECT_FALSE(ProfileText::CanHold("S", "k", "v\nx=1"));
}

TEST(ProfileTextTest, AnEmptyValueIsReplaced) {
  ProfileText text("[A]\nx=\ny= \t\n");
  EXPECT_TRUE(text.Set("A", "x", "1"));
  EXPECT_TRUE(text.Set("A", "y", "2"));
  EXPECT_EQ(text.Bytes(), "[A]\nx=1\ny= \t2\n");
}

TEST(ProfileTextTest, OnlyWhatCountsIsAChange) {
  const ProfileText now("[A]\nx=1\nx=2\n;z=3\ny=4\n[B]\nw=5\n[A]\nv=6\n");
  const ProfileText before("[A]\ny=4\n");
  std::vector<std::string> changes;
  now.ForEachChange(before, [&](auto section, auto key, auto value) {
    changes.push_back(std::string(section).append(".").append(key).append("=").append(value));
  });
  EXPECT_EQ(changes, (std::vector<std::string>{"A.x=1", "B.w=5"}));
}

}  // namespace
}  // namespace tarnvale
