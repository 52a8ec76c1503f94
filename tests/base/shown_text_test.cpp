#include "base/shown_text.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(ShownTextTest, PlainTextsOfAnyLanguageStay) {
  for (const char* text : {"", "a b/c~",
                           "Gr\xC3\xBC\xC3\x9F"
                           "e",
                           "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D", "\xE2\x82\xAC", "\xF0\x9F\x8C\xB2",
                           "\xC2\xA0", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_EQ(Shown(text), text);
  }
}

TEST(ShownTextTest, ControlCharactersBecomeQuestionMarks) {
  EXPECT_EQ(Shown(std::string_view("a\0b\n\r\t\x1B[2J\x7F", 11)), "a?b????[2J?");
  // Next line, and the one-character form of "ESC [".
  EXPECT_EQ(Shown("a\xC2\x80"
                  "b\xC2\x85"
                  "c\xC2\x9B"
                  "2J\xC2\x9F"),
            "a?b?c?2J?");
}

TEST(ShownTextTest, CharactersThatTurnTheDirectionBecomeQuestionMarks) {
  EXPECT_EQ(Shown("\xD8\x9C \xE2\x80\x8E \xE2\x80\x8F"), "? ? ?");
  EXPECT_EQ(Shown("gnp.\xE2\x80\xAE"
                  "cod"),
            "gnp.?cod");
  EXPECT_EQ(Shown("\xE2\x80\xAA\xE2\x80\xAB\xE2\x80\xAC\xE2\x80\xAD"), "????");
  EXPECT_EQ(Shown("\xE2\x81\xA6\xE2\x81\xA7\xE2\x81\xA8\xE2\x81\xA9"), "????");
}

TEST(ShownTextTest, LineAndParagraphEndsOfUnicodeBecomeQuestionMarks) {
  EXPECT_EQ(Shown("a\xE2\x80\xA8"
                  "b\xE2\x80\xA9"),
            "a?b?");
}

// A terminal of 8 bits takes 9B alone for the beginning of a sequence.
TEST(ShownTextTest, BytesThatAreNoTextBecomeQuestionMarksOneByOne) {
  EXPECT_EQ(Shown("a\x9B"
                  "2J"),
            "a?2J");
  EXPECT_EQ(Shown("\xC3"), "?");
  EXPECT_EQ(Shown("\xE2\x82"), "??");
  EXPECT_EQ(Shown("\xE2"
                  "ab"),
            "?ab");
  // A longer form than needed, half a pair, beyond the last character.
  EXPECT_EQ(Shown("\xC0\x8A"), "??");
  EXPECT_EQ(Shown("\xE0\x82\x9B"), "???");
  EXPECT_EQ(Shown("\xF0\x80\x82\x9B"), "????");
  EXPECT_EQ(Shown("\xED\xA0\x80"), "???");
  EXPECT_EQ(Shown("\xF4\x90\x80\x80"), "????");
  EXPECT_EQ(Shown("\xF8\xFF"), "??");
}

}  // namespace
}  // namespace tarnvale
