#include "tests/shell/form1_fixture.h"

namespace tarnvale::testing {
namespace {

using Form1TicksTest = Form1Test;

TEST_F(Form1TicksTest, ShowHiddenDrivesTwoFlagsOfThePaneAndShowSystemTheThird) {
  form.List.Check1.Value = true;
  machine.Advance(500ms);
  EXPECT_TRUE(form.List.File1.ShowHidden);
  EXPECT_TRUE(form.List.File1.ShowReadOnly);
  EXPECT_FALSE(form.List.File1.ShowSystem);
  form.List.Check1.Value = false;
  form.List.Check3.Value = true;
  machine.Advance(500ms);
  EXPECT_FALSE(form.List.File1.ShowHidden);
  EXPECT_FALSE(form.List.File1.ShowReadOnly);
  EXPECT_TRUE(form.List.File1.ShowSystem);
}

TEST_F(Form1TicksTest, ShowReadOnlyIsNotRead) {
  form.List.Check4.Value = true;
  machine.Advance(1s);
  EXPECT_FALSE(form.List.File1.ShowReadOnly);
}

TEST_F(Form1TicksTest, TheExtensionFilterEnablesItsFieldAndSurroundsItsText) {
  form.List.Text2.Text = ".tvz";
  machine.Advance(500ms);
  EXPECT_FALSE(form.List.Text2.Enabled);
  EXPECT_EQ(form.List.File1.Pattern.Get(), "*.*");
  form.List.Check2.Value = true;
  machine.Advance(500ms);
  EXPECT_TRUE(form.List.Text2.Enabled);
  EXPECT_EQ(form.List.File1.Pattern.Get(), "*.tvz*");
}

TEST_F(Form1TicksTest, TheTreesOfTheOtherScreensAreSetUpOnceEach) {
  form.Load();
  int storage_starts = 0;
  int restore_starts = 0;
  form.Storage.StorageTree.Started.Listen([&] { ++storage_starts; });
  form.Restore.RestoreSourceTree.Started.Listen([&] { ++restore_starts; });
  form.Restore.RestoreTargetTree.Started.Listen([&] { ++restore_starts; });
  machine.Advance(200ms);
  EXPECT_EQ(restore_starts, 2);
  EXPECT_EQ(storage_starts, 0);
  machine.Advance(300ms);
  EXPECT_EQ(storage_starts, 1);
  EXPECT_EQ(form.Storage.StorageTree.SelectedPath.Get(), "C:\\Program");
  machine.Advance(10s);
  EXPECT_EQ(storage_starts, 1);
  EXPECT_EQ(restore_starts, 2);
}

TEST_F(Form1TicksTest, WithoutACompressionFolderThereIsNoCompressionAndNoUpload) {
  form.Load();
  engine.settings.CompressDir = "C:\\Archives";
  engine.settings.AutoCompress = true;
  engine.settings.AutoUpload = true;
  machine.Advance(100ms);
  EXPECT_TRUE(form.Advanced.Check6.Enabled);
  EXPECT_TRUE(form.Advanced.Check7.Enabled);
  EXPECT_TRUE(engine.settings.AutoUpload);
  engine.settings.CompressDir = "";
  machine.Advance(100ms);
  EXPECT_FALSE(engine.settings.AutoCompress);
  EXPECT_FALSE(engine.settings.AutoUpload);
  EXPECT_FALSE(form.Advanced.Check6.Enabled);
  EXPECT_FALSE(form.Advanced.Check7.Enabled);
}

TEST_F(Form1TicksTest, UploadCanBeChosenOnlyWithCompression) {
  form.Load();
  engine.settings.CompressDir = "C:\\Archives";
  engine.settings.AutoUpload = true;
  machine.Advance(100ms);
  EXPECT_FALSE(engine.settings.AutoUpload);
  EXPECT_FALSE(form.Advanced.Check7.Enabled);
}

TEST_F(Form1TicksTest, TheFileListFollowsTheTree) {
  machine.files.Write("C:\\Work\\a.txt", "");
  form.Load();
  form.List.ListTree.SelectedPath = "C:\\Work";
  machine.Advance(500ms);
  EXPECT_EQ(form.List.Text3.Text.Get(), "C:\\Work");
  EXPECT_EQ(form.List.File1.Rows(), std::vector<std::string>{"a.txt"});
}

TEST_F(Form1TicksTest, TheRestoreFoldersFollowTheirTrees) {
  form.Load();
  machine.Advance(500ms);
  form.Restore.RestoreSourceTree.SelectedPath = "C:\\Store";
  form.Restore.RestoreTargetTree.SelectedPath = "C:\\Home";
  machine.Advance(500ms);
  EXPECT_EQ(form.Restore.Text27.Text.Get(), "C:\\Store");
  EXPECT_EQ(form.Restore.Text28.Text.Get(), "C:\\Home");
}

TEST_F(Form1TicksTest, TheWizardsEndShowsTheScheduleASecondLater) {
  form.Load();
  form.InTaskBar = false;  // as in the tray
  form.Label37.Clicked.Emit();
  form.WizardClose();
  machine.Advance(900ms);
  EXPECT_EQ(form.State.Get(), WindowState::kMinimized);
  machine.Advance(100ms);
  EXPECT_EQ(form.State.Get(), WindowState::kNormal);
  EXPECT_TRUE(form.InTaskBar);
  EXPECT_EQ(VisibleFrames(), std::vector<int>{4});
  EXPECT_FALSE(engine.timers[EngineTimer::kWizardPage].Enabled);
}

TEST_F(Form1TicksTest, TheSummaryCountsTheListAndMarksTheStages) {
  engine.settings.Entries.Assign({"C:\\a", "C:\\b"});
  engine.settings.AutoReport = true;
  machine.Advance(500ms);
  EXPECT_EQ(form.Schedule.ItemCount.Caption.Get(), "2 Items");
  EXPECT_TRUE(form.Schedule.CheckBox11.Checked);
  EXPECT_FALSE(form.Schedule.CheckBox9.Checked);
  EXPECT_FALSE(form.Schedule.CheckBox10.Checked);
}

TEST_F(Form1TicksTest, TheCaptionYesStaysBesideAClearedBox) {
  engine.settings.AutoUpload = true;
  machine.Advance(500ms);
  EXPECT_EQ(form.Schedule.CheckBox10.Caption.Get(), "Yes");
  engine.settings.AutoUpload = false;
  machine.Advance(500ms);
  EXPECT_FALSE(form.Schedule.CheckBox10.Checked);
  EXPECT_EQ(form.Schedule.CheckBox10.Caption.Get(), "Yes");
}

TEST_F(Form1TicksTest, TheReportNeedsServerAndRecipient) {
  engine.settings.AutoReport = true;
  engine.settings.SmtpServer = "mail.example";
  machine.Advance(100ms);
  EXPECT_FALSE(form.Advanced.Check12.Enabled);
  EXPECT_TRUE(engine.settings.AutoReport) << "its value is left alone";
  engine.settings.ReportTo = "ann@example";
  machine.Advance(100ms);
  EXPECT_TRUE(form.Advanced.Check12.Enabled);
}

TEST_F(Form1TicksTest, TheSyncModeNeedsAListOfExactlyOneItem) {
  engine.settings.Entries.Append("C:\\a");
  machine.Advance(200ms);
  EXPECT_TRUE(form.General.Option3.Enabled);
  form.General.Option3.Value = true;
  engine.settings.Entries.Append("C:\\b");
  machine.Advance(200ms);
  EXPECT_FALSE(form.General.Option3.Enabled);
  EXPECT_FALSE(form.General.Option3.Value);
  EXPECT_FALSE(form.General.Option1.Value) << "no other mode takes its place";
  EXPECT_TRUE(engine.settings.SyncroFlag);
}

TEST_F(Form1TicksTest, TheScheduleScreenShowsDateTimeAndTheNextRun) {
  machine.Advance(100ms);
  EXPECT_EQ(form.Schedule.Label29.Caption.Get(), "11:00:00 AM");
  EXPECT_EQ(form.Schedule.Label58.Caption.Get(), "Friday, March 14, 2008");
  EXPECT_EQ(form.Schedule.Label60.Caption.Get(), "No Backup Has Scheduled");
  engine.settings.EachTime = MakeTime({1, 30, 0});
  engine.settings.LoadMinute = MakeTime({22, 45, 0});
  machine.Advance(100ms);
  EXPECT_EQ(form.Schedule.Label60.Caption.Get(), "12:15:00 AM");
}

}  // namespace
}  // namespace tarnvale::testing
