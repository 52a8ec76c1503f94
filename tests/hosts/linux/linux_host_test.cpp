// The whole host: between native paths and the program's.
#include "hosts/linux/linux_host.h"

#include "tests/hosts/linux/linux_drive.h"

namespace tarnvale {
namespace {

using LinuxHostTest = LinuxDriveTest;

TEST_F(LinuxHostTest, TheNativePathOfWhatIsThereIsFoundWithoutRegardToCase) {
  MakeFolder("Home/Ann");
  Write("Home/Ann/Letter.TXT", "four");
  EXPECT_EQ(host_.NativeOf("C:\\home\\ANN\\letter.txt"), Native("Home/Ann/Letter.TXT"));
  EXPECT_EQ(host_.NativeOf("\\home\\ann\\"), Native("Home/Ann"));
  EXPECT_EQ(host_.NativeOf("C:\\"), Native("."));
}

TEST_F(LinuxHostTest, WhatIsNotThereHasNoNativePath) {
  MakeFolder("Home");
  EXPECT_EQ(host_.NativeOf("C:\\Home\\none"), "");
  EXPECT_EQ(host_.NativeOf("C:\\none\\none"), "");
  EXPECT_EQ(host_.NativeOf("D:\\Home"), "");
  EXPECT_EQ(host_.NativeOf("Home"), "");
  EXPECT_EQ(host_.NativeOf(""), "");
}

TEST_F(LinuxHostTest, ANativePathHasAPathUnlessOneOfItsNamesCantBeWritten) {
  EXPECT_EQ(host_.PathOf(Native("Home/a b")), "C:\\Home\\a b");
  EXPECT_EQ(host_.PathOf(root_), "C:");
  EXPECT_EQ(host_.PathOf(Native("Home/a\\b")), "");
  EXPECT_EQ(host_.PathOf(Native("Ho*me/a")), "");
}

}  // namespace
}  // namespace tarnvale
