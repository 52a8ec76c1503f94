#include "ui/folder_tree_rows.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FolderTreeRowsTest : public ::testing::Test {
 protected:
  FolderTreeRowsTest() {
    rows.Inserting.Listen([this](const FolderTreeRows::Change& change) {
      changes.push_back("+" + std::to_string(change.first) + "x" + std::to_string(change.count));
    });
    rows.Removing.Listen([this](const FolderTreeRows::Change& change) {
      changes.push_back("-" + std::to_string(change.first) + "x" + std::to_string(change.count));
    });
  }

  FolderRow& RowAt(const Path& folder) {
    FolderRow* row = rows.Find(folder);
    if (row != nullptr) return *row;
    ADD_FAILURE() << folder << " has no row";
    return rows.Root();
  }
  std::vector<std::string> Below(const Path& folder) {
    std::vector<std::string> names;
    for (const auto& row : RowAt(folder).children) names.push_back(row->name);
    return names;
  }

  static FileSystem& WithAStick(FakeFiles& files) {
    files.AddDrive("D", DriveKind::kRemovable);
    return files;
  }

  FakeMachine machine;
  FolderTreeRows rows{WithAStick(machine.files)};
  std::vector<std::string> changes;
};

TEST_F(FolderTreeRowsTest, EachDriveIsARowByItsRootFolder) {
  ASSERT_EQ(rows.Root().children.size(), 2U);
  EXPECT_EQ(rows.PathOf(*rows.Root().children[1]), "D:\\");
  EXPECT_EQ(rows.Find("d:\\"), rows.Root().children[1].get());
  EXPECT_EQ(rows.Find("E:\\"), nullptr);
}

TEST_F(FolderTreeRowsTest, DrivesComeAndGo) {
  machine.files.AddDrive("E", DriveKind::kNetwork);
  machine.files.RemoveDrive("D");
  rows.RefreshDrives();
  EXPECT_THAT(changes, ElementsAre("-1x1", "+1x1"));
  EXPECT_NE(rows.Find("E:\\"), nullptr);
  EXPECT_EQ(rows.Find("D:\\"), nullptr);
}

TEST_F(FolderTreeRowsTest, ADriveThatMayNotAnswerIsReadWhenItIsOpened) {
  machine.files.MakeFolder("D:\\Photos");
  EXPECT_FALSE(rows.Peek(RowAt("D:\\")));
  EXPECT_TRUE(RowAt("D:\\").MayHaveChildren());
  rows.Open(RowAt("D:\\"));
  EXPECT_THAT(Below("D:\\"), ElementsAre("Photos"));
}

TEST_F(FolderTreeRowsTest, APathWithoutADriveIsOnTheFirst) {
  machine.files.MakeFolder("C:\\home\\ann");
  EXPECT_EQ(rows.PathOf(RowAt("\\home\\ann\\")), "C:\\home\\ann");
}

TEST_F(FolderTreeRowsTest, NothingIsReadBeforeItIsOpened) {
  machine.files.MakeFolder("C:\\home\\ann");
  EXPECT_TRUE(RowAt("C:\\home").MayHaveChildren());
  EXPECT_THAT(Below("C:\\home"), IsEmpty());
  rows.Open(RowAt("C:\\home"));
  EXPECT_THAT(Below("C:\\home"), ElementsAre("ann"));
  EXPECT_TRUE(rows.Peek(RowAt("C:\\home\\ann")));
  EXPECT_FALSE(rows.Peek(RowAt("C:\\home\\ann")));
  EXPECT_FALSE(RowAt("C:\\home\\ann").MayHaveChildren());
}

TEST_F(FolderTreeRowsTest, AFolderIsFoundInAnyCaseOfAnyAlphabet) {
  machine.files.MakeFolder("C:\\home\\Ärger");
  EXPECT_EQ(rows.PathOf(RowAt("C:\\Home\\ärger")), "C:\\home\\Ärger");
  EXPECT_THAT(Below("C:\\home"), ElementsAre("Ärger"));
}

TEST_F(FolderTreeRowsTest, AFolderThatHasTheVeryNameComesFirst) {
  machine.files.DistinguishCase("C");
  machine.files.MakeFolder("C:\\home\\Ann");
  machine.files.MakeFolder("C:\\home\\ann");
  EXPECT_EQ(rows.PathOf(RowAt("C:\\home\\ann")), "C:\\home\\ann");
  EXPECT_EQ(rows.PathOf(RowAt("C:\\home\\Ann")), "C:\\home\\Ann");
}

TEST_F(FolderTreeRowsTest, AFolderThatIsMissingHasNoRow) {
  EXPECT_EQ(rows.Find("C:\\no\\where"), nullptr);
  EXPECT_EQ(rows.Find(""), nullptr);
  EXPECT_EQ(rows.Find("Program"), nullptr);
}

TEST_F(FolderTreeRowsTest, AFolderThatCameLaterGetsItsRowInItsPlace) {
  for (const char* name : {"ann", "eve"})
    machine.files.MakeFolder(std::string("C:\\home\\") + name);
  rows.Open(RowAt("C:\\home"));
  machine.files.MakeFolder("C:\\home\\Bob");
  EXPECT_EQ(RowAt("C:\\home\\Bob").place, 1U);
  EXPECT_THAT(Below("C:\\home"), ElementsAre("ann", "Bob", "eve"));
}

TEST_F(FolderTreeRowsTest, OpeningAgainAddsAndRemovesRunsOfRows) {
  for (const char* name : {"a", "b", "c", "f"}) {
    machine.files.MakeFolder(std::string("C:\\home\\") + name);
  }
  FolderRow& home = RowAt("C:\\home");
  rows.Open(home);
  rows.Refresh(home);
  for (const char* name : {"b", "c"}) machine.files.Remove(std::string("C:\\home\\") + name);
  for (const char* name : {"d", "e", "g"}) {
    machine.files.MakeFolder(std::string("C:\\home\\") + name);
  }
  FolderRow& f = RowAt("C:\\home\\f");
  changes.clear();
  rows.Refresh(home);
  EXPECT_THAT(Below("C:\\home"), ElementsAre("a", "d", "e", "f", "g"));
  EXPECT_THAT(changes, ElementsAre("-1x2", "+1x2", "+4x1"));
  EXPECT_EQ(&RowAt("C:\\home\\f"), &f);
  EXPECT_EQ(f.place, 3U);
}

TEST_F(FolderTreeRowsTest, WhatWasJustReadIsNotReadTwice) {
  machine.files.MakeFolder("C:\\home\\ann");
  FolderRow& home = RowAt("C:\\home");
  rows.Open(home);
  machine.files.MakeFolder("C:\\home\\bob");
  rows.Refresh(home);
  EXPECT_THAT(Below("C:\\home"), ElementsAre("ann"));
  rows.Refresh(home);
  EXPECT_THAT(Below("C:\\home"), ElementsAre("ann", "bob"));
}

TEST_F(FolderTreeRowsTest, ARefreshReadsNoFolderThatWasNotOpened) {
  machine.files.MakeFolder("C:\\home\\ann");
  FolderRow& home = RowAt("C:\\home");
  machine.files.ClearCalls();
  rows.Refresh(home);
  EXPECT_EQ(machine.files.CallsOf("ListFolders"), 0);
  EXPECT_THAT(home.children, IsEmpty());
}

TEST_F(FolderTreeRowsTest, ADriveThatIsOpenedAgainShowsWhatCame) {
  FolderRow& drive = *rows.Root().children[1];
  rows.Open(drive);
  rows.Refresh(drive);
  machine.files.MakeFolder("D:\\Photos");
  rows.Refresh(drive);
  EXPECT_THAT(Below("D:\\"), ElementsAre("Photos"));
}

TEST_F(FolderTreeRowsTest, AFolderThatHadNoFoldersCanBeOpenedOnceTheOneAboveItWasOpenedAgain) {
  machine.files.MakeFolder("C:\\media\\stick");
  FolderRow& media = RowAt("C:\\media");
  rows.Open(media);
  rows.Refresh(media);
  ASSERT_TRUE(rows.Peek(RowAt("C:\\media\\stick")));
  machine.files.MakeFolder("C:\\media\\stick\\Backup");
  rows.Refresh(media);
  EXPECT_TRUE(RowAt("C:\\media\\stick").MayHaveChildren());
  rows.Open(RowAt("C:\\media\\stick"));
  EXPECT_THAT(Below("C:\\media\\stick"), ElementsAre("Backup"));
}

TEST_F(FolderTreeRowsTest, TheRowOfAFolderThatIsGoneGoes) {
  machine.files.MakeFolder("C:\\home\\ann");
  machine.files.MakeFolder("C:\\home\\bob");
  rows.Open(RowAt("C:\\home"));
  machine.files.Remove("C:\\home\\ann");
  rows.Refresh(RowAt("C:\\home\\ann"));
  EXPECT_THAT(Below("C:\\home"), ElementsAre("bob"));
}

TEST_F(FolderTreeRowsTest, AFolderThatCannotBeReadHasNoRows) {
  machine.files.MakeFolder("C:\\home\\ann");
  machine.files.FailNext("ListFolders", 75);
  rows.Open(*rows.Root().children[0]);
  EXPECT_FALSE(rows.Root().children[0]->MayHaveChildren());
}

}  // namespace
}  // namespace tarnvale::testing
