#include "platform/path_text.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(PathTextTest, APathHasADriveAndNames) {
  const auto path = TakeApart("c:\\Data\\a.txt");
  ASSERT_TRUE(path);
  EXPECT_EQ(path->drive, 'C');
  EXPECT_FALSE(path->begins_twice);
  EXPECT_THAT(path->names, ElementsAre("Data", "a.txt"));
  EXPECT_THAT(TakeApart("D:\\")->names, IsEmpty());
  EXPECT_THAT(TakeApart("D:")->names, IsEmpty());
}

TEST(PathTextTest, ALeadingSeparatorIsTheCurrentDrive) {
  EXPECT_EQ(TakeApart("\\Data")->drive, 0);
  EXPECT_THAT(TakeApart("/Data/a")->names, ElementsAre("Data", "a"));
}

TEST(PathTextTest, RepeatedSeparatorsCountAsOne) {
  EXPECT_THAT(TakeApart("C:\\\\Data\\/a\\")->names, ElementsAre("Data", "a"));
  EXPECT_TRUE(EndsInSeparator("C:\\Data\\"));
  EXPECT_FALSE(EndsInSeparator("C:\\Data"));
  EXPECT_FALSE(EndsInSeparator(""));
}

TEST(PathTextTest, PointsLeadUpwardsAndNeverAboveTheDrive) {
  EXPECT_THAT(TakeApart("C:\\a\\..\\.\\b")->names, ElementsAre("b"));
  EXPECT_THAT(TakeApart("C:\\..\\..\\b\\..")->names, IsEmpty());
  EXPECT_THAT(TakeApart("C:\\...\\b")->names, ElementsAre("...", "b"));
}

TEST(PathTextTest, TwoLeadingSeparatorsAreTheNetworks) {
  EXPECT_TRUE(TakeApart("\\\\server\\share\\a")->begins_twice);
  EXPECT_THAT(TakeApart("\\\\server\\share\\a")->names, ElementsAre("server", "share", "a"));
  EXPECT_FALSE(TakeApart("\\\\")->begins_twice);
  EXPECT_FALSE(TakeApart("\\\\\\a")->begins_twice);
  EXPECT_FALSE(TakeApart("C:\\\\a")->begins_twice);
}

TEST(PathTextTest, WhatIsNotAbsoluteOrHoldsAZeroByteIsNoPath) {
  EXPECT_FALSE(TakeApart("Data\\a"));
  EXPECT_FALSE(TakeApart(""));
  for (const char* path : {"1:\\a", "@:\\a", "[:\\a", "`:\\a", "{:\\a"}) {
    EXPECT_FALSE(TakeApart(path)) << path;
  }
  EXPECT_FALSE(TakeApart(std::string_view("C:\\a\0b", 6)));
}

TEST(PathTextTest, ADriveOrASeparatorMakesANameAPath) {
  for (const char* path : {"a\\b", "a/b", "\\", "C:a", "C:"})
    EXPECT_TRUE(IsPathLanguage(path)) << path;
  for (const char* name : {"", "a", "regedit.exe", ":", "ab:"})
    EXPECT_FALSE(IsPathLanguage(name)) << name;
}

}  // namespace
}  // namespace tarnvale
