#include "base/stable_hash.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(StableHashTest, NamesStayWhatTheyWereInEarlierReleases) {
  EXPECT_EQ(StableHash(""), "cbf29ce484222325");
  EXPECT_EQ(StableHash("a"), "af63dc4c8601ec8c");
  EXPECT_EQ(StableHash("foobar"), "85944171f73967e8");
}

TEST(StableHashTest, SmallValuesHaveAllSixteenDigits) {
  EXPECT_EQ(Hexadecimal(0x1f), "000000000000001f");
}

TEST(StableHashTest, OnlySixteenSmallDigitsAreHexadecimal) {
  EXPECT_TRUE(IsHexadecimal("00000000000000af"));
  EXPECT_FALSE(IsHexadecimal("0000000000000af"));
  EXPECT_FALSE(IsHexadecimal("000000000000000af"));
  EXPECT_FALSE(IsHexadecimal("00000000000000AF"));
  EXPECT_FALSE(IsHexadecimal("00000000000000ag"));
}

}  // namespace
}  // namespace tarnvale
