#include "base/numbers.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/raised.h"

namespace tarnvale {
namespace {

using testing::RaisedBy;

constexpr std::int64_t kMost32 = 2147483647;
constexpr std::int64_t kMost64 = std::numeric_limits<std::int64_t>::max();

TEST(NumbersTest, WhatFitsIsNarrowed) {
  EXPECT_EQ(ToInt16(-32768), -32768);
  EXPECT_EQ(ToInt16(32767), 32767);
  EXPECT_EQ(ToInt32(-kMost32 - 1), -kMost32 - 1);
  EXPECT_EQ(ToByte(0), 0);
  EXPECT_EQ(ToByte(255), 255);
}

TEST(NumbersTest, WhatDoesNotFitRaises6) {
  EXPECT_EQ(RaisedBy([] { ToInt16(32768); }), 6);
  EXPECT_EQ(RaisedBy([] { ToInt16(-32769); }), 6);
  EXPECT_EQ(RaisedBy([] { ToInt32(kMost32 + 1); }), 6);
  EXPECT_EQ(RaisedBy([] { ToByte(256); }), 6);
  EXPECT_EQ(RaisedBy([] { ToByte(-1); }), 6);
}

TEST(NumbersTest, ArithmeticRaises6WhereTheResultDoesNotFit) {
  EXPECT_EQ(Add32(kMost32 - 1, 1), kMost32);
  EXPECT_EQ(Add32(-2147483647 - 1, 4294967295), kMost32);
  EXPECT_EQ(RaisedBy([] { Add32(2147483647, 1); }), 6);
  EXPECT_EQ(RaisedBy([] { Add32(1, kMost64); }), 6);
  EXPECT_EQ(RaisedBy([] { Add32(-1, -kMost64 - 1); }), 6);
  EXPECT_EQ(Subtract32(-1, 2147483647), -kMost32 - 1);
  EXPECT_EQ(RaisedBy([] { Subtract32(-2, 2147483647); }), 6);
  EXPECT_EQ(Multiply32(46340, 46340), 2147395600);
  EXPECT_EQ(RaisedBy([] { Multiply32(46341, 46341); }), 6);
  EXPECT_EQ(Add16(32766, 1), 32767);
  EXPECT_EQ(RaisedBy([] { Add16(32767, 1); }), 6);
}

TEST(NumbersTest, HalvesRoundToTheEvenNeighbour) {
  EXPECT_EQ(RoundHalfEven(0.5), 0);
  EXPECT_EQ(RoundHalfEven(1.5), 2);
  EXPECT_EQ(RoundHalfEven(2.5), 2);
  EXPECT_EQ(RoundHalfEven(-0.5), 0);
  EXPECT_EQ(RoundHalfEven(-1.5), -2);
  EXPECT_EQ(RoundHalfEven(-2.5), -2);
}

TEST(NumbersTest, EverythingElseRoundsToTheNearest) {
  EXPECT_EQ(RoundHalfEven(0.49999999999999994), 0);
  EXPECT_EQ(RoundHalfEven(2.51), 3);
  EXPECT_EQ(RoundHalfEven(-2.51), -3);
  EXPECT_EQ(RoundHalfEven(9007199254740993.0), 9007199254740992);
}

TEST(NumbersTest, RoundingRaises6BeyondItsRange) {
  EXPECT_EQ(RaisedBy([] { RoundHalfEven(9223372036854775808.0); }), 6);
  EXPECT_EQ(RoundHalfEven(-9223372036854775808.0), -kMost64 - 1);
  EXPECT_EQ(RoundToInt32(2147483647.4), kMost32);
  EXPECT_EQ(RaisedBy([] { RoundToInt32(2147483647.5); }), 6);
}

TEST(NumbersTest, AWholeTextIsANumber) {
  EXPECT_EQ(ToNumber("12"), 12);
  EXPECT_EQ(ToNumber(" \t-12.5 "), -12.5);
  EXPECT_EQ(ToNumber("+.5"), 0.5);
  EXPECT_EQ(ToNumber("5."), 5);
  EXPECT_EQ(ToNumber("1e3"), 1000);
  EXPECT_EQ(ToNumber("2E-2"), 0.02);
}

TEST(NumbersTest, AnythingElseRaises13) {
  for (const char* text : {"", "  ", "x", "12x", "1 2", "--1", "+-1", "-", ".", "e5", "1e", "inf",
                           "nan", "0x10", "1,5", "???"}) {
    EXPECT_EQ(RaisedBy([&] { ToNumber(text); }), 13) << text;
  }
}

TEST(NumbersTest, ANumberBeyondTheRangeOfADoubleRaises6) {
  EXPECT_EQ(RaisedBy([] { ToNumber("1e400"); }), 6);
  EXPECT_EQ(RaisedBy([] { ToNumber("-1e400"); }), 6);
  EXPECT_EQ(RaisedBy([] { ToNumber("1" + std::string(400, '0')); }), 6);
  EXPECT_EQ(RaisedBy([] { ToNumber("1e99999999999999999999"); }), 6);
  EXPECT_EQ(RaisedBy([] { LeadingNumber("1e400 bytes"); }), 6);
}

TEST(NumbersTest, ANumberTooSmallForADoubleIsZero) {
  EXPECT_EQ(ToNumber("1e-400"), 0);
  EXPECT_EQ(ToNumber("0." + std::string(400, '0') + "1"), 0);
  EXPECT_EQ(ToNumber("1e-99999999999999999999"), 0);
  EXPECT_EQ(LeadingNumber("12e-400 bytes"), 0);
}

TEST(NumbersTest, TheNumberAtTheStartOfATextIsTaken) {
  EXPECT_EQ(LeadingNumber("12 files"), 12);
  EXPECT_EQ(LeadingNumber("  -1.5e2x"), -150);
  EXPECT_EQ(LeadingNumber("1e"), 1);
  EXPECT_EQ(LeadingNumber("files 12"), 0);
  EXPECT_EQ(LeadingNumber(""), 0);
  EXPECT_EQ(LeadingNumber("\\"), 0);
}

TEST(NumbersTest, ATextBecomesAByte) {
  EXPECT_EQ(TextToByte("127"), 127);
  EXPECT_EQ(TextToByte("0.5"), 0);
  EXPECT_EQ(TextToByte("254.5"), 254);
  EXPECT_EQ(RaisedBy([] { TextToByte("255.5"); }), 6);
  EXPECT_EQ(RaisedBy([] { TextToByte("-1"); }), 6);
  EXPECT_EQ(RaisedBy([] { TextToByte("many"); }), 13);
}

TEST(NumbersTest, WholeNumbersBecomeDigits) {
  EXPECT_EQ(ToText(0), "0");
  EXPECT_EQ(ToText(-42), "-42");
  EXPECT_EQ(ToText(kMost64), "9223372036854775807");
}

TEST(NumbersTest, WhatDoesNotFitOverflows) {
  EXPECT_EQ(ToInt32(kMost32), 2147483647);
  EXPECT_EQ(RaisedBy([] { ToInt32(kMost32 + 1); }), kOverflow);
  EXPECT_EQ(RaisedBy([] { ToInt32(-kMost32 - 2); }), kOverflow);
  EXPECT_EQ(ToByte(255), 255);
  EXPECT_EQ(RaisedBy([] { ToByte(256); }), kOverflow);
  EXPECT_EQ(RaisedBy([] { ToByte(-1); }), kOverflow);
}

}  // namespace
}  // namespace tarnvale
