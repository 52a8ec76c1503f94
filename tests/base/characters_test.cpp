#include "base/characters.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarnvale {
namespace {

using namespace std::literals;

TEST(CharactersTest, ACodePointIsOneCharacter) {
  EXPECT_EQ(CountCharacters(""), 0U);
  EXPECT_EQ(CountCharacters("abc"), 3U);
  EXPECT_EQ(CountCharacters("a\0b"sv), 3U);
  EXPECT_EQ(CountCharacters("Gr\xC3\xBC\xC3\x9F"
                            "e"),
            5U);
  EXPECT_EQ(CountCharacters("\xE2\x82\xAC"), 1U);              // U+20AC
  EXPECT_EQ(CountCharacters("\xF0\x9F\x92\xBE!"), 2U);         // U+1F4BE
  EXPECT_EQ(CountCharacters("\xED\x9F\xBF\xEE\x80\x80"), 2U);  // beside the surrogates
  EXPECT_EQ(CountCharacters("\xF4\x8F\xBF\xBF"), 1U);          // U+10FFFF
}

TEST(CharactersTest, EachByteOfNoCodePointIsOneCharacter) {
  EXPECT_EQ(CountCharacters("\xFF\xFE"), 2U);
  EXPECT_EQ(CountCharacters("\x80"), 1U);
  EXPECT_EQ(CountCharacters("\xC3"), 1U);
  EXPECT_EQ(CountCharacters("\xC3z"), 2U);
  EXPECT_EQ(CountCharacters("\xE2\x82"), 2U);
  EXPECT_EQ(CountCharacters("\xE2\x82z"), 3U);
  EXPECT_EQ(CountCharacters("\xC0\xAF"), 2U);          // too long a form of "/"
  EXPECT_EQ(CountCharacters("\xE0\x80\xAF"), 3U);      // likewise
  EXPECT_EQ(CountCharacters("\xF0\x80\x80\xAF"), 4U);  // likewise
  EXPECT_EQ(CountCharacters("\xED\xA0\x80"), 3U);      // a surrogate
  EXPECT_EQ(CountCharacters("\xF4\x90\x80\x80"), 4U);  // beyond the last code point
  EXPECT_EQ(CountCharacters("\xF5\x80\x80\x80"), 4U);
}

TEST(CharactersTest, NoCutLiesWithinACharacter) {
  const std::string text = "a\xC3\xA9\xE2\x82\xAC\xFFz";
  EXPECT_EQ(FirstCharacters(text, 0), "");
  EXPECT_EQ(FirstCharacters(text, 2), "a\xC3\xA9");
  EXPECT_EQ(FirstCharacters(text, 3), "a\xC3\xA9\xE2\x82\xAC");
  EXPECT_EQ(FirstCharacters(text, 4), "a\xC3\xA9\xE2\x82\xAC\xFF");
  EXPECT_EQ(FirstCharacters(text, 5), text);
  EXPECT_EQ(FirstCharacters(text, 6), text);
  EXPECT_EQ(WithoutLastCharacters(text, 2), "a\xC3\xA9\xE2\x82\xAC");
  EXPECT_EQ(WithoutLastCharacters(text, 3), "a\xC3\xA9");
  EXPECT_EQ(WithoutLastCharacters(text, 5), "");
  EXPECT_EQ(WithoutLastCharacters(text, 6), "");
}

TEST(CharactersTest, WholeCharactersOfALengthInBytes) {
  const std::string text = "a\xC3\xA9\xF0\x9F\x98\x80\xA9z";
  const std::vector<std::size_t> cuts{0, 1, 1, 3, 3, 3, 3, 7, 8, 9};
  for (std::size_t bytes = 0; bytes < cuts.size(); ++bytes) {
    EXPECT_EQ(WholeCharacters(text, bytes), text.substr(0, cuts[bytes])) << bytes;
  }
  EXPECT_EQ(WholeCharacters("a\xE2\x82", 3), "a");
  EXPECT_EQ(WholeCharacters("a\xE2\x82", 4), "a\xE2\x82");
}

TEST(CharactersTest, PaddingCountsCharacters) {
  EXPECT_EQ(PaddedWithNuls("\xC3\xA9", 3), "\xC3\xA9\0\0"s);
  EXPECT_EQ(PaddedWithNuls("abc", 3), "abc");
  EXPECT_EQ(PaddedWithNuls("abc", 2), "abc");
}

TEST(CharactersTest, ACodePointIsAddedInAsManyBytesAsItNeeds) {
  std::string text;
  for (const char32_t character :
       {0x41U, 0x7FU, 0x80U, 0x7FFU, 0x800U, 0xD800U, 0xFFFFU, 0x10000U}) {
    AppendCharacter(text, character);
  }
  EXPECT_EQ(text, "A\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80");
}

}  // namespace
}  // namespace tarnvale
