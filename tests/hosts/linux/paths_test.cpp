#include "hosts/linux/paths.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(PathsTest, DriveCIsTheRoot) {
  EXPECT_EQ(DrivePaths("/").ToNative("C:\\home\\ann"), "/home/ann");
  EXPECT_EQ(DrivePaths("/").ToNative("c:\\home"), "/home");
  EXPECT_EQ(DrivePaths("/srv/drive/").ToNative("C:\\home\\ann"), "/srv/drive/home/ann");
}

TEST(PathsTest, APathThatBeginsWithABackslashIsOnDriveC) {
  EXPECT_EQ(DrivePaths("/").ToNative("\\Data.txt"), "/Data.txt");
}

TEST(PathsTest, RepeatedBackslashesCountAsOne) {
  EXPECT_EQ(DrivePaths("/").ToNative("C:\\\\a\\\\\\b"), "/a/b");
  EXPECT_EQ(DrivePaths("/").ToNative("\\\\a"), "/a");
}

TEST(PathsTest, TheRootHasAPathOfItsOwn) {
  EXPECT_EQ(DrivePaths("/").ToNative("C:\\"), "/.");
  EXPECT_EQ(DrivePaths("/").ToNative("C:"), "/.");
  EXPECT_EQ(DrivePaths("/srv").ToNative("\\"), "/srv/.");
}

TEST(PathsTest, ABackslashAtTheEndIsDropped) {
  EXPECT_EQ(DrivePaths("/").ToNative("C:\\a\\b\\"), "/a/b");
}

TEST(PathsTest, DotsNeverLeadAboveTheRoot) {
  EXPECT_EQ(DrivePaths("/srv").ToNative("C:\\a\\..\\..\\..\\b"), "/srv/b");
  EXPECT_EQ(DrivePaths("/srv").ToNative("C:\\a\\.\\b\\.."), "/srv/a");
  EXPECT_EQ(DrivePaths("/srv").ToNative("C:\\.."), "/srv/.");
}

TEST(PathsTest, OtherDrivesDoNotExist) {
  EXPECT_EQ(DrivePaths("/").ToNative("D:\\a"), std::nullopt);
  EXPECT_EQ(DrivePaths("/").ToNative("a\\b"), std::nullopt);
  EXPECT_EQ(DrivePaths("/").ToNative(""), std::nullopt);
  EXPECT_EQ(DrivePaths("/").ToNative(std::string("C:\\a\0b", 6)), std::nullopt);
}

TEST(PathsTest, ASlashSeparatesToo) {
  EXPECT_EQ(DrivePaths("/").ToNative("C:/a/b\\c"), "/a/b/c");
}

TEST(PathsTest, NativePathsTurnBack) {
  EXPECT_EQ(DrivePaths("/").FromNative("/usr/bin"), "C:\\usr\\bin");
  EXPECT_EQ(DrivePaths("/").FromNative("/"), "C:");
  EXPECT_EQ(DrivePaths("/srv/drive").FromNative("/srv/drive/x/"), "C:\\x");
  EXPECT_EQ(DrivePaths("/srv/drive").FromNative("/srv/drivel/x"), "C:");
  EXPECT_EQ(DrivePaths("/srv/drive").FromNative("/usr"), "C:");
}

TEST(PathsTest, ABackslashAndAStarCannotBeNamed) {
  EXPECT_TRUE(CanBeNamed("a b?.txt"));
  EXPECT_FALSE(CanBeNamed("a\\b"));
  EXPECT_FALSE(CanBeNamed("*"));
}

}  // namespace
}  // namespace tarnvale
