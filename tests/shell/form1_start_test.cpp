#include "tests/kit/recording_painter.h"
#include "tests/shell/form1_fixture.h"

namespace tarnvale::testing {
namespace {

using Form1StartTest = Form1Test;

TEST_F(Form1StartTest, LoadsTheSettingsAndStandsMinimizedButShown) {
  GivenSettings("[Destiny]\r\nDir=C:\\Store\r\n[Entries]\r\n0=C:\\a.txt\r\n");
  form.Load();
  EXPECT_EQ(form.Storage.Text1.Text.Get(), "C:\\Store");
  EXPECT_EQ(form.List.List1.Rows.At(0), "C:\\a.txt");
  EXPECT_EQ(form.State.Get(), WindowState::kMinimized);
  EXPECT_TRUE(form.Visible);
}

TEST_F(Form1StartTest, OfAllScreensOnlyTheScheduleIsSeen) {
  EXPECT_EQ(kAllScreens.size(), Frames().size());
  EXPECT_EQ(VisibleFrames(), std::vector<int>{4});
}

TEST_F(Form1StartTest, TheWindowHasTheProgramsIcon) {
  form.Load();
  EXPECT_EQ(form.Icon.Get(), "AAA");
}

TEST_F(Form1StartTest, ABarThatIsHalfFullShowsIt) {
  for (XP_ProgressBar* bar : {&form.Progress.XP_ProgressBar1, &form.Progress.XP_ProgressBar2,
                              &form.Restore.XP_ProgressBar3}) {
    bar->Value = 50;
    Canvas canvas({100, 22}, 1);
    RecordingPainter text;
    bar->Paint(canvas, text);
    EXPECT_NE(canvas.PixelAt(40, 11), canvas.PixelAt(60, 11));
  }
}

TEST_F(Form1StartTest, TheRunsDestinationIsTheLoadedOne) {
  GivenSettings("[Destiny]\r\nDir=C:\\Store\r\n");
  form.Load();
  EXPECT_EQ(engine.run.RunDestination.Get(), "C:\\Store");
  form.Storage.Text1.Text = "C:\\Elsewhere";
  EXPECT_EQ(engine.run.RunDestination.Get(), "C:\\Store");
}

TEST_F(Form1StartTest, TheFilePaneBeginsAtTheDrivesRootAndTheTreeAtTheProgram) {
  form.Load();
  EXPECT_EQ(form.List.File1.Folder.Get(), "C:\\");
  EXPECT_EQ(form.List.ListTree.SelectedPath.Get(), "C:\\Program");
}

TEST_F(Form1StartTest, LoadEnablesTheTimerThatLinksCompressionAndUpload) {
  EXPECT_FALSE(engine.timers[EngineTimer::kAutoSettingsLink].Enabled);
  form.Load();
  EXPECT_TRUE(engine.timers[EngineTimer::kAutoSettingsLink].Enabled);
}

TEST_F(Form1StartTest, TheFirstFocusOnTheFixedTimeChoosesTheFixedTime) {
  GivenSettings("[When]\r\nAlwaysAt=12:00\r\nDefault=False\r\n");
  EXPECT_TRUE(engine.settings.ScheduleEach);
  form.Load();
  EXPECT_EQ(form.Focused(), &form.Schedule.MaskEdBox1);
  EXPECT_TRUE(engine.settings.ScheduleAt);
  EXPECT_FALSE(engine.settings.ScheduleEach);
}

TEST_F(Form1StartTest, TheFirstFocusOnTheIntervalChoosesTheInterval) {
  GivenSettings("[When]\r\nEach=01:30\r\nDefault=True\r\n");
  form.Load();
  EXPECT_EQ(form.Focused(), &form.Schedule.MaskEdBox2);
  EXPECT_TRUE(engine.settings.ScheduleEach);
}

TEST_F(Form1StartTest, LaterActivationsLeaveTheFocusAlone) {
  form.Load();
  form.Focus(form.Schedule.Optionbutton3);
  form.Activated.Emit();
  EXPECT_EQ(form.Focused(), &form.Schedule.Optionbutton3);
}

TEST_F(Form1StartTest, ASecondInstanceSaysSoOnceAndIsClosedAfterAllSteps) {
  machine.processes.previous_instance = true;
  machine.boxes.Expect("Another Instance Of Tarnvale Is Already Running On This System.",
                       BoxIcon::kExclamation, BoxAnswer::kOk);
  GivenSettings("[Destiny]\r\nDir=C:\\Store\r\n");
  form.Load();
  EXPECT_TRUE(form.IsDying());
  EXPECT_FALSE(form.Visible);
  EXPECT_EQ(engine.settings.DestinationDir.Get(), "C:\\Store") << "the steps run to their end";
  EXPECT_EQ(machine.boxes.Shown().size(), 1U);
  EXPECT_EQ(machine.boxes.Shown()[0].title, "Tarnvale");
}

TEST_F(Form1StartTest, AScheduledMinuteOfTheSettingsFileCopiesTheList) {
  machine.files.Write("C:\\Work\\a.txt", "one");
  machine.files.Write("C:\\Store\\keep.txt", "");
  GivenSettings(
      "[When]\r\nAlwaysAt=11:05\r\nDefault=False\r\n[Destiny]\r\nDir=C:\\Store\r\n"
      "[Entries]\r\n0=C:\\Work\\a.txt\r\n");
  form.Load();
  machine.Advance(4min);
  EXPECT_FALSE(machine.files.Exists("C:\\Store\\a.txt"));
  machine.Advance(2min + 10s);
  EXPECT_EQ(machine.files.Content("C:\\Store\\a.txt"), "one");
  EXPECT_EQ(VisibleFrames(), std::vector<int>{3});
}

TEST_F(Form1StartTest, WithoutItsDataFolderTheProgramStartsItsEndAfterFiveSeconds) {
  machine.files.Write("C:\\Program\\Quit.exe", "");
  machine.files.Write("C:\\Program\\Data.txt", "C:\\Gone\r\n");
  form.Load();
  machine.Advance(5s);
  EXPECT_TRUE(machine.processes.Started().empty());
  machine.Advance(100ms);
  const StartedProcess quit{StartKind::kProgram, "C:\\Program\\Quit.exe"};
  EXPECT_EQ(machine.processes.Started(), std::vector{quit});
  machine.Advance(200ms);
  EXPECT_EQ(machine.processes.Started().size(), 3U) << "again and again until it has ended";
}

TEST_F(Form1StartTest, WithoutAPointerFileTheProgramStartsItsEndAfterFiveSeconds) {
  machine.files.Write("C:\\Program\\Quit.exe", "");
  machine.files.Remove("C:\\Program\\Data.txt");
  form.Load();
  EXPECT_EQ(engine.settings.DataFolder.Get(), "");
  machine.Advance(5s);
  EXPECT_TRUE(machine.processes.Started().empty());
  machine.Advance(100ms);
  const StartedProcess quit{StartKind::kProgram, "C:\\Program\\Quit.exe"};
  EXPECT_EQ(machine.processes.Started(), std::vector{quit});
}

}  // namespace
}  // namespace tarnvale::testing
