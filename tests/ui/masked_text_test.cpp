#include "ui/masked_text.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnvale::testing {
namespace {

/// "12:34|" is a text with its caret, "1[2:3]4" one with a part selected.
std::string DrawnText(const MaskedText& field) {
  std::string drawn = field.text;
  if (field.selected == 0) return drawn.insert(field.caret, "|");
  return drawn.insert(field.caret + field.selected, "]").insert(field.caret, "[");
}

MaskedText Time(const std::string& text, std::size_t caret, std::size_t selected = 0) {
  return {.mask = "##:##", .text = text, .caret = caret, .selected = selected};
}

TEST(MaskedTextTest, IsBlankWithZeros) {
  EXPECT_EQ(BlankMask("##:##"), "00:00");
}

TEST(MaskedTextTest, DigitsOverwriteAndTheCaretSkipsTheColon) {
  MaskedText field = Time("00:00", 0);
  for (const auto& [typed, drawn] : {std::pair("1", "1|0:00"), {"7", "17:|00"}, {"3", "17:3|0"}}) {
    field.Type(typed);
    EXPECT_EQ(DrawnText(field), drawn);
  }
  field.Type("45");
  EXPECT_EQ(DrawnText(field), "17:34|") << "nothing goes behind the last place";
}

TEST(MaskedTextTest, OfAPastedTextTheDigitsCount) {
  MaskedText field = Time("00:00", 0);
  field.Type("1x7-459");
  EXPECT_EQ(DrawnText(field), "17:45|");
}

TEST(MaskedTextTest, TypingReplacesWhatIsSelected) {
  MaskedText field = Time("12:34", 1, 3);
  field.Type("9");
  EXPECT_EQ(DrawnText(field), "19:|04");
}

TEST(MaskedTextTest, TheMasksOwnCharacterStepsOverItself) {
  MaskedText field = Time("12:34", 0);
  field.Type(":");
  EXPECT_EQ(DrawnText(field), "12:|34");
}

TEST(MaskedTextTest, AnyOtherCharacterIsRefused) {
  for (const char* typed : {"x", "#", "\xC3\xA9"}) {
    MaskedText field = Time("12:34", 1, 3);
    field.Type(typed);
    EXPECT_EQ(DrawnText(field), "1[2:3]4") << typed;
  }
}

TEST(MaskedTextTest, ATextOfAnotherLengthIsPutIntoTheMaskFirst) {
  MaskedText field = Time("173", 0);
  field.Type("0");
  EXPECT_EQ(DrawnText(field), "0|7:30");
}

TEST(MaskedTextTest, ErasingLeavesZeros) {
  MaskedText next = Time("12:34", 2);
  next.Erase();
  EXPECT_EQ(DrawnText(next), "12|:04");
  MaskedText part = Time("12:34", 1, 3);
  part.Erase();
  EXPECT_EQ(DrawnText(part), "1|0:04");
}

TEST(MaskedTextTest, ErasingBackTakesWhatIsSelected) {
  MaskedText field = Time("12:34", 3, 2);
  field.EraseBack();
  EXPECT_EQ(DrawnText(field), "12:|00");
}

TEST(MaskedTextTest, ErasingBackTakesThePlaceBeforeTheCaret) {
  MaskedText field = Time("12:34", 3);
  field.EraseBack();
  EXPECT_EQ(DrawnText(field), "1|0:34");
  field.EraseBack();
  EXPECT_EQ(DrawnText(field), "|00:34");
  field.EraseBack();
  EXPECT_EQ(DrawnText(field), "|00:34");
}

}  // namespace
}  // namespace tarnvale::testing
