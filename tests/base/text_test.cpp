#include "base/text.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(TextTest, OnlyAsciiLettersAreLowered) {
  EXPECT_EQ(ToLower("ABZ[az09"), "abz[az09");
  EXPECT_EQ(ToLower("\xC3\x84@"), "\xC3\x84@");
}

TEST(TextTest, EqualityIgnoresTheCaseOfAsciiLetters) {
  EXPECT_TRUE(EqualIgnoringCase("Tarnvale.INI", "tarnvale.ini"));
  EXPECT_TRUE(EqualIgnoringCase("", ""));
  EXPECT_FALSE(EqualIgnoringCase("a", "ab"));
  EXPECT_FALSE(EqualIgnoringCase("[", "{"));
}

TEST(TextTest, ABackslashIsAddedWhereThereIsNone) {
  EXPECT_EQ(WithBackslash("C:\\Data"), "C:\\Data\\");
  EXPECT_EQ(WithBackslash("C:\\"), "C:\\");
  EXPECT_EQ(WithBackslash(""), "\\");
}

TEST(TextTest, OneLineHasNoControlCharacters) {
  EXPECT_EQ(OneLine("a\r\nb\tc\x1B[1m\x7F~ \xC3\xBC"), "a??b?c?[1m?~ \xC3\xBC");
  EXPECT_EQ(OneLine(std::string_view("a\0b", 3)), "a?b");
  EXPECT_EQ(OneLine(""), "");
  // The next line of the second control set, and Unicode's line and paragraph ends.
  EXPECT_EQ(OneLine("a\xC2\x85-\xE2\x80\xA8-\xE2\x80\xA9-\x85\xFF"), "a?-?-?-\x85\xFF");
}

TEST(TextTest, TheFileNameStandsBehindTheLastBackslash) {
  EXPECT_EQ(FileNameOf("C:\\Data\\a.txt"), "a.txt");
  EXPECT_EQ(FileNameOf("C:\\Data\\"), "");
  EXPECT_EQ(FileNameOf("a.txt"), "");
}

TEST(TextTest, TheFolderEndsInTheLastBackslash) {
  EXPECT_EQ(FolderOf("C:\\Data\\a.txt"), "C:\\Data\\");
  EXPECT_EQ(FolderOf("C:\\Data\\"), "C:\\Data\\");
  EXPECT_EQ(FolderOf("a.txt"), "");
}

TEST(TextTest, OneCharacterIsCounted) {
  EXPECT_EQ(CountChar("C:\\a\\b", "\\"), 2);
  EXPECT_EQ(CountChar("abc", "x"), 0);
  EXPECT_EQ(CountChar("abab", "ab"), 0);
  EXPECT_EQ(CountChar("abab", ""), 0);
  EXPECT_EQ(CountChar("", "x"), 0);
  EXPECT_EQ(CountChar("", ""), 0);
  EXPECT_EQ(CountChar("\xC3\xA9t\xC3\xA9", "\xC3\xA9"), 2);
  EXPECT_EQ(CountChar("\xC3\xA9t\xC3\xA9", "\xC3"), 0);
}

TEST(TextTest, TrimmingTakesSpacesAndTabsFromBothEndsOnly) {
  EXPECT_EQ(Trimmed(" \t a b\t "), "a b");
  EXPECT_EQ(Trimmed("\r\n"), "\r\n");
  EXPECT_EQ(Trimmed(" \t"), "");
}

TEST(TextTest, ALineEndOrAZeroByteFitsNoLine) {
  EXPECT_TRUE(FitsOneLine(""));
  EXPECT_TRUE(FitsOneLine("a\tb"));
  EXPECT_FALSE(FitsOneLine("a\r"));
  EXPECT_FALSE(FitsOneLine("\nb"));
  EXPECT_FALSE(FitsOneLine(std::string_view("a\0b", 3)));
}

}  // namespace
}  // namespace tarnvale
