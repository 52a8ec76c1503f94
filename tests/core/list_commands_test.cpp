#include "core/list_commands.h"

#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Add = ListCommands::Add;

class ListCommandsTest : public ::testing::Test {
 protected:
  ListCommandsTest() {
    list.MultiSelect = true;
    for (const char* name : {"a.txt", "b.txt", "c.txt"}) {
      machine.files.Write(std::string("C:\\Data\\") + name, "x");
    }
    Open("C:\\Data");
  }

  void Open(const Path& path) {
    folder = path;
    pane.Folder = path;
  }
  ListFields Screen() { return {folder, pane, list}; }
  void Do(Add what) { commands.AddToBackupList(Screen(), what); }
  void ExpectThere(const std::string& item) {
    machine.boxes.Expect("Item Is Already In Your Backup List: \n\n" + item, BoxIcon::kInformation,
                         BoxAnswer::kOk);
  }

  FakeMachine machine;
  BackupList entries;
  Property<std::string> folder;
  FileList pane{machine.files};
  ListBox list{entries};
  ListCommands commands{machine.boxes, machine.desktop, entries};
};

TEST_F(ListCommandsTest, AddsTheOneSelectedFile) {
  pane.Select(1, true);
  Do(Add::kSelectedFiles);
  EXPECT_THAT(entries.Rows(), ElementsAre("C:\\Data\\b.txt"));
}

TEST_F(ListCommandsTest, OneSelectedFileGoesByThePanesCurrentName) {
  pane.Select(0, true);
  pane.Select(1, true);
  pane.Select(1, false);
  Do(Add::kSelectedFiles);
  EXPECT_THAT(entries.Rows(), ElementsAre("C:\\Data\\b.txt"));
}

TEST_F(ListCommandsTest, AddsAllSelectedFilesFromTheTop) {
  pane.Select(2, true);
  pane.Select(0, true);
  Do(Add::kSelectedFiles);
  EXPECT_THAT(entries.Rows(), ElementsAre("C:\\Data\\a.txt", "C:\\Data\\c.txt"));
}

TEST_F(ListCommandsTest, AddsNothingWhenNoFileIsSelected) {
  Do(Add::kSelectedFiles);
  EXPECT_THAT(entries.Rows(), IsEmpty());
}

TEST_F(ListCommandsTest, OneFileThatIsThereGetsTheMessage) {
  entries.Append("C:\\Data\\a.txt");
  pane.Select(0, true);
  ExpectThere("C:\\Data\\a.txt");
  Do(Add::kSelectedFiles);
  EXPECT_EQ(entries.Count(), 1U);
}

TEST_F(ListCommandsTest, AFileThatIsThereDoesNotStopThePass) {
  entries.Append("C:\\Data\\b.txt");
  for (std::size_t row = 0; row < 3; ++row) pane.Select(row, true);
  ExpectThere("C:\\Data\\b.txt");
  Do(Add::kSelectedFiles);
  EXPECT_THAT(entries.Rows(), ElementsAre("C:\\Data\\b.txt", "C:\\Data\\a.txt", "C:\\Data\\c.txt"));
}

TEST_F(ListCommandsTest, AddsAFoldersContentsAndAWholeFolder) {
  Do(Add::kFolderContents);
  Do(Add::kWholeFolder);
  EXPECT_THAT(entries.Rows(), ElementsAre("C:\\Data\\*.*", "C:\\Data\\*+++++*"));
}

TEST_F(ListCommandsTest, TheSameFolderTwiceGetsTheMessage) {
  Do(Add::kWholeFolder);
  ExpectThere("C:\\Data\\*+++++*");
  Do(Add::kWholeFolder);
  Do(Add::kFolderContents);
  ExpectThere("C:\\Data\\*.*");
  Do(Add::kFolderContents);
  EXPECT_EQ(entries.Count(), 2U);
}

TEST_F(ListCommandsTest, AnItemThatDiffersInCaseIsAnother) {
  entries.Append("c:\\data\\*.*");
  Do(Add::kFolderContents);
  EXPECT_EQ(entries.Count(), 2U);
}

TEST_F(ListCommandsTest, ADriveRootGetsNoSecondBackslash) {
  Open("C:\\");
  Do(Add::kFolderContents);
  EXPECT_THAT(entries.Rows(), ElementsAre("C:\\*.*"));
}

TEST_F(ListCommandsTest, ThePointerIsBusyDuringTheCommandOnly) {
  PointerShape during = PointerShape::kDefault;
  entries.Appended.Listen([&] { during = machine.desktop.Pointer; });
  Do(Add::kFolderContents);
  EXPECT_EQ(during, PointerShape::kHourglass);
  EXPECT_EQ(machine.desktop.Pointer, PointerShape::kDefault);
}

TEST_F(ListCommandsTest, AFailureShowsItsNumberAndEndsTheCommand) {
  entries.Appended.Listen([] { throw ProgramError(kPathNotFound); });
  pane.Select(0, true);
  pane.Select(1, true);
  machine.boxes.Expect("76\nPath not found", BoxIcon::kStop, BoxAnswer::kOk);
  Do(Add::kSelectedFiles);
  EXPECT_THAT(entries.Rows(), ElementsAre("C:\\Data\\a.txt"));
}

// --- removing

class RemoveSelectedTest : public ListCommandsTest {
 protected:
  RemoveSelectedTest() { entries.Assign({"0", "1", "2", "3", "4"}); }

  // Undoes the next `times` removals and fails them, as if nothing had been
  // removed.
  void FailRemovals(int number, int times) {
    entries.Removed.Listen([this, number, left = times](std::size_t row) mutable {
      if (left-- <= 0) return;
      entries.Assign({"0", "1", "2", "3", "4"});
      list.Select(row, true);
      throw ProgramError(number);
    });
  }
};

TEST_F(RemoveSelectedTest, RemovesNothingWhenNothingIsSelected) {
  commands.RemoveSelected(Screen());
  EXPECT_EQ(entries.Count(), 5U);
}

TEST_F(RemoveSelectedTest, RemovesAllSelectedRows) {
  for (const std::size_t row : {0U, 1U, 3U, 4U}) list.Select(row, true);
  commands.RemoveSelected(Screen());
  EXPECT_THAT(entries.Rows(), ElementsAre("2"));
}

TEST_F(RemoveSelectedTest, RemovesFromTheLastRowToTheFirst) {
  std::vector<std::size_t> removed;
  entries.Removed.Listen([&](std::size_t row) { removed.push_back(row); });
  for (const std::size_t row : {1U, 2U, 4U}) list.Select(row, true);
  commands.RemoveSelected(Screen());
  EXPECT_THAT(removed, ElementsAre(4U, 2U, 1U));
}

TEST_F(RemoveSelectedTest, AnUnavailableDriveIsSaidUntilTheRemovalGoesThrough) {
  list.Select(2, true);
  FailRemovals(kDeviceUnavailable, 3);
  for (int time = 0; time < 3; ++time) {
    machine.boxes.Expect("The Selected Drive Is Not Currently Available.", BoxIcon::kStop,
                         BoxAnswer::kOk);
  }
  commands.RemoveSelected(Screen());
  EXPECT_THAT(entries.Rows(), ElementsAre("0", "1", "3", "4"));
}

TEST_F(RemoveSelectedTest, AnyOtherFailureIsSaidByItsNumber) {
  list.Select(2, true);
  FailRemovals(kInvalidCall, 1);
  machine.boxes.Expect("5\nInvalid procedure call or argument", BoxIcon::kStop, BoxAnswer::kOk);
  commands.RemoveSelected(Screen());
  EXPECT_THAT(entries.Rows(), ElementsAre("0", "1", "3", "4"));
}

}  // namespace
}  // namespace tarnvale::testing
