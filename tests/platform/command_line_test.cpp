#include "platform/command_line.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(CommandLineTest, BlanksPartWords) {
  EXPECT_EQ(WordsOf("  one \t two  "), (std::vector<std::string>{"one", "two"}));
  EXPECT_TRUE(WordsOf(" \t ").empty());
}

TEST(CommandLineTest, QuotesHoldAWordTogether) {
  EXPECT_EQ(WordsOf("C:\\Windows\\Regedit.exe /e \"C:\\My Files\\a.reg\" \"HKEY\\\""),
            (std::vector<std::string>{"C:\\Windows\\Regedit.exe", "/e", "C:\\My Files\\a.reg",
                                      "HKEY\\"}));
  EXPECT_EQ(WordsOf("a\"b c\"d \"\""), (std::vector<std::string>{"ab cd", ""}));
}

TEST(CommandLineTest, AnUnclosedQuoteRunsToTheEnd) {
  EXPECT_EQ(WordsOf("x /e \"a b\" \"HKEY_USERS and more"),
            (std::vector<std::string>{"x", "/e", "a b", "HKEY_USERS and more"}));
}

}  // namespace
}  // namespace tarnvale
