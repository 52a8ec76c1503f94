#include "platform/names.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(NamesTest, StarTakesAnyRunAndQuestionMarkOneCharacter) {
  EXPECT_TRUE(MatchesPattern("letter.txt", "*.txt"));
  EXPECT_TRUE(MatchesPattern("letter.txt", "*tter*"));
  EXPECT_TRUE(MatchesPattern("abcbcd", "a*bcd"));
  EXPECT_FALSE(MatchesPattern("letter.txt", "*.tx"));
  EXPECT_TRUE(MatchesPattern("a1", "a?"));
  EXPECT_FALSE(MatchesPattern("a", "a?"));
  EXPECT_TRUE(MatchesPattern("\xC3\xA4.txt", "?.txt")) << "one character of two bytes";
  EXPECT_TRUE(MatchesPattern("a", "a**"));
}

TEST(NamesTest, StarPointStarIsEverything) {
  EXPECT_TRUE(MatchesPattern("no_extension", "*.*"));
  EXPECT_TRUE(MatchesPattern("x", ""));
  EXPECT_FALSE(MatchesPattern("no_extension", "n*.*"));
}

TEST(NamesTest, OrderIsThatOfTheLettersWithoutTheirCase) {
  std::vector<std::string> names = {"z", "b", "Z", "a", "_", "B", "A", "ab"};
  SortNames(names);
  EXPECT_EQ(names, (std::vector<std::string>{"_", "A", "a", "ab", "B", "b", "Z", "z"}));
}

}  // namespace
}  // namespace tarnvale
