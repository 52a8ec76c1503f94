#include "core/file_control.h"

#include <gmock/gmock.h>

#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

constexpr const char* kQuestion = "Destination already exists. Do you want replace?";

class FileControlTest : public ::testing::Test {
 protected:
  FileControlTest() {
    machine.files.Write("C:\\From\\a.txt", "new a");
    machine.files.Write("C:\\From\\Sub\\b.txt", "new b");
  }

  FakeMachine machine;
  FileControl control{machine.files, machine.boxes, machine.loop};
};

TEST_F(FileControlTest, AFileOfOneByteExists) {
  machine.files.Write("C:\\one.txt", "1");
  EXPECT_TRUE(control.FileExists("C:\\one.txt"));
}

TEST_F(FileControlTest, AnEmptyFileAFolderAndAMissingFileDoNotExist) {
  machine.files.Write("C:\\empty.txt", "");
  EXPECT_FALSE(control.FileExists("C:\\empty.txt"));
  EXPECT_FALSE(control.FileExists("C:\\From"));
  EXPECT_FALSE(control.FileExists("C:\\gone.txt"));
  EXPECT_FALSE(control.FileExists("Z:\\gone.txt"));
}

TEST_F(FileControlTest, AFileThatCannotBeReadDoesNotExist) {
  machine.files.FailNext("Length", 70);
  EXPECT_FALSE(control.FileExists("C:\\From\\a.txt"));
}

TEST_F(FileControlTest, AFolderIsCopiedWithAllThatIsInIt) {
  EXPECT_TRUE(control.CopyFolderTo("C:\\From", "C:\\To", {.overwrite = true}));
  EXPECT_EQ(machine.files.Content("C:\\To\\a.txt"), "new a");
  EXPECT_EQ(machine.files.Content("C:\\To\\Sub\\b.txt"), "new b");
  EXPECT_TRUE(machine.files.Exists("C:\\From\\a.txt"));
}

TEST_F(FileControlTest, ACopyMergesIntoAFolderThatIsThereWithoutAsking) {
  machine.files.Write("C:\\To\\a.txt", "old a");
  machine.files.Write("C:\\To\\other.txt", "other");
  EXPECT_TRUE(control.CopyFolderTo("C:\\From", "C:\\To", {.overwrite = false}));
  EXPECT_EQ(machine.files.Content("C:\\To\\a.txt"), "new a");
  EXPECT_EQ(machine.files.Content("C:\\To\\other.txt"), "other");
  EXPECT_TRUE(machine.boxes.Shown().empty());
}

TEST_F(FileControlTest, AMoveTakesTheSourceAway) {
  EXPECT_TRUE(control.CopyFolderTo("C:\\From", "C:\\To", {.move = true, .overwrite = true}));
  EXPECT_EQ(machine.files.Content("C:\\To\\Sub\\b.txt"), "new b");
  EXPECT_FALSE(machine.files.Exists("C:\\From"));
}

TEST_F(FileControlTest, AFileAtTheDestinationIsAskedAboutAndOkGoesOn) {
  machine.files.Write("C:\\To", "a file");
  machine.boxes.Expect(kQuestion, BoxIcon::kQuestion, BoxAnswer::kOk);
  // The work is tried, and a file is no place for a folder.
  EXPECT_FALSE(control.CopyFolderTo("C:\\From", "C:\\To", {.overwrite = false}));
  EXPECT_EQ(machine.boxes.Shown().at(0).buttons, BoxButtons::kOkCancel);
  EXPECT_EQ(machine.files.CallsOf("CopyTree"), 1);
}

TEST_F(FileControlTest, ARefusalDoesNothingAndIsNoFailure) {
  machine.files.Write("C:\\To", "a file");
  machine.boxes.Expect(kQuestion, BoxIcon::kQuestion, BoxAnswer::kCancel);
  EXPECT_TRUE(control.CopyFolderTo("C:\\From", "C:\\To", {.overwrite = false}));
  EXPECT_EQ(machine.files.CallsOf("CopyTree"), 0);
}

TEST_F(FileControlTest, ARefusedMoveLeavesTheSource) {
  machine.files.Write("C:\\To", "a file");
  machine.boxes.Expect(kQuestion, BoxIcon::kQuestion, BoxAnswer::kCancel);
  EXPECT_TRUE(control.CopyFolderTo("C:\\From", "C:\\To", {.move = true, .overwrite = false}));
  EXPECT_TRUE(machine.files.Exists("C:\\From\\a.txt"));
}

TEST_F(FileControlTest, OverwriteAsksNothing) {
  machine.files.Write("C:\\To", "a file");
  EXPECT_FALSE(control.CopyFolderTo("C:\\From", "C:\\To", {.overwrite = true}));
  EXPECT_TRUE(machine.boxes.Shown().empty());
}

TEST_F(FileControlTest, AnEmptyFileAtTheDestinationIsNotAskedAbout) {
  machine.files.Write("C:\\To", "");
  EXPECT_FALSE(control.CopyFolderTo("C:\\From", "C:\\To", {.overwrite = false}));
  EXPECT_TRUE(machine.boxes.Shown().empty());
}

TEST_F(FileControlTest, AFailureIsTrappedAndSaidNowhere) {
  EXPECT_FALSE(control.CopyFolderTo("C:\\Gone", "C:\\To", {.overwrite = true}));
  machine.files.FailNext("CopyTree", 61);
  EXPECT_FALSE(control.CopyFolderTo("C:\\From", "C:\\To", {.overwrite = true}));
  machine.files.FailNext("MoveTree", 70);
  EXPECT_FALSE(control.CopyFolderTo("C:\\From", "C:\\To", {.move = true, .overwrite = true}));
  EXPECT_TRUE(machine.boxes.Shown().empty());
}

TEST_F(FileControlTest, ACopyYieldsAfterEachFile) {
  std::vector<bool> second_is_there;
  machine.loop.OnYield(
      1, [&] { second_is_there.push_back(machine.files.Exists("C:\\To\\Sub\\b.txt")); });
  machine.loop.OnYield(
      2, [&] { second_is_there.push_back(machine.files.Exists("C:\\To\\Sub\\b.txt")); });
  control.CopyFolderTo("C:\\From", "C:\\To", {.overwrite = true});
  EXPECT_THAT(second_is_there, ElementsAre(false, true));
}

}  // namespace
}  // namespace tarnvale::testing
