#include "platform/input_item.h"

#include <gtest/gtest.h>

#include <string_view>

namespace tarnvale {
namespace {

// How many bytes of a text the scanner takes.
std::size_t Feed(InputItemScanner& scanner, std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!scanner.Feed(text[i])) return i + 1;
  }
  return text.size();
}

TEST(InputItemTest, TheDelimiterBelongsToTheItem) {
  InputItemScanner scanner;
  EXPECT_EQ(Feed(scanner, "one,two"), 4U);
  EXPECT_EQ(scanner.Item(), "one");
  EXPECT_FALSE(scanner.EndedInReturn());
}

TEST(InputItemTest, AReturnIsReported) {
  InputItemScanner scanner;
  EXPECT_EQ(Feed(scanner, "one\r\ntwo"), 4U);
  EXPECT_TRUE(scanner.EndedInReturn());
}

TEST(InputItemTest, BlanksAloneAreNoItem) {
  InputItemScanner scanner;
  EXPECT_EQ(Feed(scanner, "  \t"), 3U);
  EXPECT_FALSE(scanner.HasBegun());
}

TEST(InputItemTest, AnEmptyQuotedTextIsAnItem) {
  InputItemScanner scanner;
  EXPECT_EQ(Feed(scanner, "\"\""), 2U);
  EXPECT_TRUE(scanner.HasBegun());
  EXPECT_EQ(scanner.Item(), "");
}

TEST(InputItemTest, WhatFollowsTheClosingQuoteIsDropped) {
  InputItemScanner scanner;
  EXPECT_EQ(Feed(scanner, "\"one\" more,two"), 11U);
  EXPECT_EQ(scanner.Item(), "one");
}

TEST(InputItemTest, AQuoteInsideAPlainItemIsPartOfIt) {
  InputItemScanner scanner;
  Feed(scanner, "a\"b\"\n");
  EXPECT_EQ(scanner.Item(), "a\"b\"");
}

}  // namespace
}  // namespace tarnvale
