#include "platform/standard_number.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnvale {
namespace {

TEST(StandardNumberTest, HasTwoDecimalsAlways) {
  EXPECT_EQ(StandardNumberText(0, {}), "0.00");
  EXPECT_EQ(StandardNumberText(7, {}), "7.00");
  EXPECT_EQ(StandardNumberText(0.1, {}), "0.10");
  EXPECT_EQ(StandardNumberText(12.34, {}), "12.34");
}

TEST(StandardNumberTest, GroupsThousands) {
  EXPECT_EQ(StandardNumberText(999, {}), "999.00");
  EXPECT_EQ(StandardNumberText(1000, {}), "1,000.00");
  EXPECT_EQ(StandardNumberText(123456789012.0, {}), "123,456,789,012.00");
}

TEST(StandardNumberTest, HalvesOfTheDecimalNumberGoAwayFromZero) {
  EXPECT_EQ(StandardNumberText(1.005, {}), "1.01");
  EXPECT_EQ(StandardNumberText(2.675, {}), "2.68");
  EXPECT_EQ(StandardNumberText(-2.675, {}), "-2.68");
  EXPECT_EQ(StandardNumberText(0.005, {}), "0.01");
  EXPECT_EQ(StandardNumberText(0.0049999, {}), "0.00");
}

TEST(StandardNumberTest, RoundingMayAddADigit) {
  EXPECT_EQ(StandardNumberText(9.995, {}), "10.00");
  EXPECT_EQ(StandardNumberText(999.999, {}), "1,000.00");
  EXPECT_EQ(StandardNumberText(0.999, {}), "1.00");
}

TEST(StandardNumberTest, WhatRoundsToZeroHasNoSign) {
  EXPECT_EQ(StandardNumberText(-0.0, {}), "0.00");
  EXPECT_EQ(StandardNumberText(-0.004, {}), "0.00");
  EXPECT_EQ(StandardNumberText(1e-300, {}), "0.00");
}

TEST(StandardNumberTest, DigitsBeyondTheFifteenthAreZeros) {
  EXPECT_EQ(StandardNumberText(1e20, {}), "100,000,000,000,000,000,000.00");
  EXPECT_EQ(StandardNumberText(1234567890123456.0, {}), "1,234,567,890,123,460.00");
}

TEST(StandardNumberTest, MarksAreTheLocales) {
  EXPECT_EQ(StandardNumberText(1234567.891, {.decimal = ",", .thousands = "."}), "1.234.567,89");
  EXPECT_EQ(StandardNumberText(1234.5, {.decimal = ",", .thousands = "\xE2\x80\xAF"}),
            "1\xE2\x80\xAF"
            "234,50");
  EXPECT_EQ(StandardNumberText(1234567, {.thousands = ""}), "1234567.00");
}

TEST(StandardNumberTest, GroupsMayDifferInSize) {
  EXPECT_EQ(StandardNumberText(1234567890, {.grouping = "\3\2"}), "1,23,45,67,890.00");
  EXPECT_EQ(StandardNumberText(12345, {.grouping = "\3\1"}), "1,2,345.00");
  EXPECT_EQ(StandardNumberText(1234567890, {.grouping = "\3\x7F"}), "1234567,890.00");
  EXPECT_EQ(StandardNumberText(1234567890, {.grouping = std::string("\3\0", 2)}), "1234567,890.00");
  EXPECT_EQ(StandardNumberText(1234567890, {.grouping = ""}), "1234567890.00");
}

}  // namespace
}  // namespace tarnvale
