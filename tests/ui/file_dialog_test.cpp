#include "ui/file_dialog.h"

#include <gmock/gmock.h>

#include "base/failure.h"
#include "tests/support/fake_machine.h"
#include "tests/support/raised.h"

namespace tarnvale {
namespace {

using Kind = testing::FakeDialogs::Kind;

class FileDialogTest : public ::testing::Test {
 protected:
  testing::FakeMachine machine;
  CFileDialog dialog{machine.Interfaces()};
  CommonDialog common{machine.Interfaces()};
};

TEST_F(FileDialogTest, GivesEveryPropertyToTheOpenDialog) {
  Window owner;
  dialog.DefaultExt = "tvz";
  dialog.DialogTitle = "Open To Split";
  dialog.FileName = "C:\\a.tvz";
  dialog.FileTitle = "a.tvz";
  dialog.Filter = "Archives|*.tvz|All|*.*";
  dialog.FilterIndex = 2;
  dialog.flags = 12292;
  dialog.hWndParent = &owner;
  dialog.InitialDir = "C:\\Data";
  machine.dialogs.Cancel(Kind::kOpen);
  EXPECT_FALSE(dialog.Show(true));

  const FileDialogRecord& given = machine.dialogs.Seen().at(0).file;
  EXPECT_EQ(given.owner, &owner);
  EXPECT_EQ(given.title, "Open To Split");
  EXPECT_EQ(given.default_ext, "tvz");
  EXPECT_EQ(given.initial_dir, "C:\\Data");
  EXPECT_EQ(given.filter_index, 2);
  EXPECT_EQ(given.flags, 12292U);
  EXPECT_EQ(given.filter, std::string("Archives\0*.tvz\0All\0*.*\0\0", 24));
  EXPECT_EQ(given.file.size(), 260U);
  EXPECT_EQ(given.file, "C:\\a.tvz" + std::string(252, '\0'));
  EXPECT_EQ(given.file_title, "a.tvz" + std::string(255, '\0'));
}

TEST_F(FileDialogTest, AConfirmedChoiceSetsNameAndTitle) {
  machine.dialogs.Choose(Kind::kSave, "C:\\Data\\b.tvz");
  EXPECT_TRUE(dialog.Show(false));
  EXPECT_EQ(dialog.FileName, "C:\\Data\\b.tvz");
  EXPECT_EQ(dialog.FileTitle, "b.tvz");
}

TEST_F(FileDialogTest, ACancelLeavesNameAndTitle) {
  dialog.FileName = "C:\\old";
  dialog.FileTitle = "old";
  machine.dialogs.Cancel(Kind::kOpen);
  EXPECT_FALSE(dialog.Show(true));
  EXPECT_EQ(dialog.FileName, "C:\\old");
  EXPECT_EQ(dialog.FileTitle, "old");
}

TEST_F(FileDialogTest, AFilterWithAnOddNumberOfFieldsIsPassedOn) {
  dialog.Filter = "Archives|*.tvz|All";
  machine.dialogs.Cancel(Kind::kOpen);
  dialog.Show(true);
  EXPECT_EQ(machine.dialogs.Seen().at(0).file.filter, std::string("Archives\0*.tvz\0All\0\0", 20));
}

TEST_F(FileDialogTest, ANameThatIsTooLongShowsABoxAndGoesOnBehindIt) {
  dialog.FileName = std::string(261, 'x');
  machine.boxes.Expect("Error: 5. Invalid procedure call or argument", BoxIcon::kNone,
                       BoxAnswer::kOk);
  machine.dialogs.Cancel(Kind::kOpen);
  EXPECT_FALSE(dialog.Show(true));
  EXPECT_EQ(machine.boxes.Shown().at(0).title, "Show");
  EXPECT_EQ(machine.dialogs.Seen().at(0).file.file, "") << "the failed statement filled nothing";
}

TEST_F(FileDialogTest, ATitleThatIsTooLongDoesLikewise) {
  dialog.FileTitle = std::string(261, 'x');
  machine.boxes.Expect("Error: 5. Invalid procedure call or argument", BoxIcon::kNone,
                       BoxAnswer::kOk);
  machine.dialogs.Cancel(Kind::kOpen);
  EXPECT_FALSE(dialog.Show(true));
  EXPECT_EQ(machine.dialogs.Seen().at(0).file.file_title, "");
}

TEST_F(FileDialogTest, ANameOf260CharactersFillsTheBuffer) {
  dialog.FileName = std::string(260, 'x');
  machine.dialogs.Cancel(Kind::kOpen);
  EXPECT_FALSE(dialog.Show(true));
  EXPECT_EQ(machine.dialogs.Seen().at(0).file.file, dialog.FileName);
}

TEST_F(FileDialogTest, TheBufferCountsCharacters) {
  std::string letters;
  for (int i = 0; i < 259; ++i) letters += "\xD0\x96";
  dialog.FileName = letters + "x";
  machine.dialogs.Choose(Kind::kOpen, letters);
  EXPECT_TRUE(dialog.Show(true));
  EXPECT_EQ(machine.dialogs.Seen().at(0).file.file, letters + "x");
  EXPECT_EQ(dialog.FileName, letters);

  dialog.FileName = letters + "xy";
  machine.dialogs.Cancel(Kind::kOpen);
  machine.boxes.Expect("Error: 5. Invalid procedure call or argument", BoxIcon::kNone,
                       BoxAnswer::kOk);
  EXPECT_FALSE(dialog.Show(true));
}

TEST_F(FileDialogTest, ADialogThatFailsShowsABoxAndCountsAsACancel) {
  machine.dialogs.Choose(Kind::kSave, "C:\\a.tvz");
  machine.dialogs.WhileOpen([] { throw ProgramError(kDiskNotReady); });
  machine.boxes.Expect("Error: 71. Disk not ready", BoxIcon::kNone, BoxAnswer::kOk);
  EXPECT_FALSE(dialog.Show(false));
  EXPECT_EQ(machine.boxes.Shown().at(0).title, "Show");
  EXPECT_EQ(dialog.FileName, "");
}

TEST_F(FileDialogTest, TheMaximumFileSizeChangesNothing) {
  dialog.MaxFileSize = 3;
  machine.dialogs.Choose(Kind::kOpen, "C:\\Data\\long name.tvz");
  EXPECT_TRUE(dialog.Show(true));
  EXPECT_EQ(dialog.FileName, "C:\\Data\\long name.tvz");
  EXPECT_EQ(dialog.MaxFileSize, 3);
  EXPECT_EQ(machine.dialogs.Seen().at(0).file.file.size(), 260U);
}

TEST_F(FileDialogTest, TrimNullsCutsAtTheFirstNul) {
  EXPECT_EQ(TrimNulls(std::string("ab\0cd\0", 6)), "ab");
  EXPECT_EQ(TrimNulls(std::string("\0ab", 3)), "");
  EXPECT_EQ(TrimNulls("ab"), "ab");
  EXPECT_EQ(TrimNulls(""), "");
}

TEST_F(FileDialogTest, ACancelOfTheCommonDialogIsAnErrorWhenAskedFor) {
  common.FileName = "C:\\old";
  machine.dialogs.Cancel(Kind::kSave);
  EXPECT_NO_THROW(common.ShowSave());
  common.CancelError = true;
  machine.dialogs.Cancel(Kind::kSave);
  EXPECT_EQ(testing::RaisedBy([&] { common.ShowSave(); }), 32755);
  EXPECT_EQ(common.FileName, "C:\\old");
}

TEST_F(FileDialogTest, TheCommonDialogGivesTheChosenNameBack) {
  machine.dialogs.Choose(Kind::kOpen, "C:\\Data\\c.reg");
  common.ShowOpen();
  EXPECT_EQ(common.FileName, "C:\\Data\\c.reg");
  EXPECT_EQ(common.FileTitle, "c.reg");
}

TEST_F(FileDialogTest, TheCommonDialogGivesItsPropertiesToTheDesktops) {
  common.DialogTitle = "Open";
  common.FileName = "C:\\a.reg";
  common.Filter = "Registry File (*.reg)|*.reg";
  common.DefaultExt = ".tvz";
  machine.dialogs.Cancel(Kind::kOpen);
  common.ShowOpen();
  const FileDialogRecord& given = machine.dialogs.Seen().at(0).file;
  EXPECT_EQ(given.owner, nullptr) << "the active window";
  EXPECT_EQ(given.title, "Open");
  EXPECT_EQ(given.file, "C:\\a.reg" + std::string(252, '\0'));
  EXPECT_EQ(given.file_title, std::string(260, '\0'));
  EXPECT_EQ(given.filter, std::string("Registry File (*.reg)\0*.reg\0\0", 29));
  EXPECT_EQ(given.filter_index, 0);
  EXPECT_EQ(given.default_ext, ".tvz");
}

TEST_F(FileDialogTest, PickFolderGivesTheFolderOrNothing) {
  Window active;
  machine.desktop.ActiveWindow = &active;
  machine.dialogs.Choose(Kind::kFolder, "C:\\Data");
  EXPECT_EQ(PickFolder(machine.Interfaces(), "Select a directory:"), "C:\\Data");
  EXPECT_EQ(machine.dialogs.Seen().at(0).folder.prompt, "Select a directory:");
  EXPECT_EQ(machine.dialogs.Seen().at(0).folder.owner, &active);
  machine.dialogs.Cancel(Kind::kFolder);
  EXPECT_EQ(PickFolder(machine.Interfaces(), "Select a directory:"), "");
}

}  // namespace
}  // namespace tarnvale
