#include "core/text_procedures.h"

#include <gtest/gtest.h>

#include "base/failure.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

std::string Replaced(std::string text, const std::string& search, const std::string& replacement) {
  return pReplace(text, search, replacement);
}

TEST(pReplaceTest, ReplacesEveryOccurrence) {
  EXPECT_EQ(Replaced("a-b-c", "-", "+"), "a+b+c");
  EXPECT_EQ(Replaced("C:\\Data\\*+++++*", "\\*+++++*", ""), "C:\\Data");
}

TEST(pReplaceTest, ChangesTheTextInPlaceAndReturnsIt) {
  std::string text = "one two";
  EXPECT_EQ(pReplace(text, "two", "three"), "one three");
  EXPECT_EQ(text, "one three");
}

TEST(pReplaceTest, TextThatAReplacementAddsIsScannedToo) {
  EXPECT_EQ(Replaced("aa", "a", "aa"), "aaaa");
}

TEST(pReplaceTest, AMatchBeyondTheOldLengthStays) {
  EXPECT_EQ(Replaced("xx", "x", "--"), "--x");
  EXPECT_EQ(Replaced("axx", "x", "yyyy"), "ayyyyx");
}

TEST(pReplaceTest, TheScanGoesOnBehindTheStartOfAMatch) {
  // The second pair moves to where the first one stood, and is passed.
  EXPECT_EQ(Replaced("abab.", "ab", ""), "ab.");
}

TEST(pReplaceTest, ATextShorterThanTheSearchStays) {
  EXPECT_EQ(Replaced("ab", "abc", "x"), "ab");
  EXPECT_EQ(Replaced("", "a", "x"), "");
}

TEST(pReplaceTest, CaseCounts) {
  EXPECT_EQ(Replaced("aA", "A", "x"), "ax");
}

TEST(pReplaceTest, AnEmptySearchMatchesAtEveryPosition) {
  EXPECT_EQ(Replaced("ab", "", "-"), "--ab");
}

TEST(pReplaceTest, AShrinkingTextEndsTheScan) {
  EXPECT_EQ(Replaced("aaaa", "aa", ""), "aa");
  EXPECT_EQ(Replaced("a", "a", ""), "");
}

TEST(pReplaceTest, PositionsCountCharacters) {
  EXPECT_EQ(Replaced("xx", "x", "\xC3\xA9x"), "\xC3\xA9\xC3\xA9xx");
  EXPECT_EQ(Replaced("x\xC3\xA9", "x", "yyx"), "yyx\xC3\xA9");
  EXPECT_EQ(Replaced("\xC3\xA9", "", "-"), "-\xC3\xA9");
  EXPECT_EQ(Replaced("\xC3\xA9", "ab", "x"), "\xC3\xA9");
}

TEST(pReplaceTest, NoMatchLiesWithinACharacter) {
  EXPECT_EQ(Replaced("\xC3\xA9", "\xC3", "x"), "\xC3\xA9");
  EXPECT_EQ(Replaced("\xC3\xA9", "\xA9", "x"), "\xC3\xA9");
  EXPECT_EQ(Replaced("\xC3z", "\xC3", "x"), "xz");
}

struct FolderCase {
  const char* path;
  int level;
  const char* folder;
};

class GetFolderTest : public ::testing::TestWithParam<FolderCase> {};

TEST_P(GetFolderTest, GivesTheComponent) {
  EXPECT_EQ(GetFolder(GetParam().path, static_cast<std::int16_t>(GetParam().level)),
            GetParam().folder);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, GetFolderTest,
    ::testing::Values(
        FolderCase{"", 1, ""}, FolderCase{"C:\\Data\\Sub", 0, "C:\\"},
        FolderCase{"C:\\Data\\Sub", 1, "Data\\"}, FolderCase{"C:\\Data\\Sub", 2, "Sub"},
        FolderCase{"C:\\Data\\Sub\\", 2, "Sub\\"},
        // Begins at or behind the last character.
        FolderCase{"C:\\", 1, "Default Folder"}, FolderCase{"C:\\", 2, "Default Folder"},
        FolderCase{"C:\\Data\\Sub\\", 3, "Default Folder"},
        FolderCase{"C:\\Data\\x", 2, "Default Folder"}, FolderCase{"C:\\Data\\xy", 2, "xy"},
        FolderCase{"C:\\Data\\\xC3\xA9", 2, "Default Folder"},
        FolderCase{"C:\\Data\\\xC3\xA9\xC3\xA9", 2, "\xC3\xA9\xC3\xA9"},
        FolderCase{"plain", 0, "plain"}));

TEST(GetFolderOverflowTest, TooFewBackslashesRaiseAnOverflow) {
  EXPECT_EQ(RaisedBy([] { GetFolder("C:\\Data", 2); }), kOverflow);
}

}  // namespace
}  // namespace tarnvale::testing
