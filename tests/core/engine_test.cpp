#include "core/engine.h"

#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EngineTest : public EngineFixture {
 protected:
  EngineTest() {
    engine.stages.ShowAlert = [this] { actions.push_back("alert"); };
  }
};

TEST_F(EngineTest, TheStateBeginsWithItsDesignValues) {
  const RunState& run = engine.run;
  EXPECT_EQ(run.EngineFree.Get(), "0");
  EXPECT_EQ(run.RunIndex, 0);
  EXPECT_EQ(run.ItemText.Get(), "0");
  EXPECT_EQ(run.MarkerChar.Get(), "+");
  EXPECT_EQ(run.MarkerCount.Get(), "0");
  EXPECT_EQ(run.PathSepChar.Get(), "\\");
  EXPECT_EQ(run.PathSepCount.Get(), "0");
  EXPECT_EQ(run.DriveText.Get(), "0");
  EXPECT_EQ(run.CopyBar, 0);
  EXPECT_EQ(run.FileBar, 0);
  EXPECT_EQ(run.Files.UpperBound(), 0U);
}

TEST_F(EngineTest, ALoadTakesTheDestinationOverForRuns) {
  machine.files.Write("C:\\Program\\Data.txt", "C:\\Data");
  machine.files.Write("C:\\Data\\Tarnvale.ini", "[Destiny]\r\nDir=D:\\Store\r\n");
  engine.LoadSettings();
  EXPECT_EQ(engine.run.RunDestination.Get(), "D:\\Store");
}

TEST_F(EngineTest, ALoadCutsTheTableOfRunFilesBackToItsRow) {
  machine.files.Write("C:\\a.txt", "a");
  engine.run.Files.AddFileToRun(machine.files, "C:\\a.txt");
  engine.LoadSettings();
  EXPECT_EQ(engine.run.Files.UpperBound(), 0U);
  EXPECT_EQ(engine.run.Files.Row(0), RunFile{});
}

TEST_F(EngineTest, EditingTheLocationAloneDoesNotChangeTheRunsOwn) {
  engine.settings.DestinationDir = "D:\\Other";
  EXPECT_EQ(engine.run.RunDestination.Get(), "C:\\Backup");
}

TEST_F(EngineTest, APreviousInstanceIsSeen) {
  EXPECT_FALSE(engine.Program_Running());
  machine.processes.previous_instance = true;
  EXPECT_TRUE(engine.Program_Running());
}

TEST_F(EngineTest, SettingsThatMeetAnObjectionAreNotSaved) {
  machine.boxes.Expect("You Must At Least Have An Item For Backup", BoxIcon::kStop, BoxAnswer::kOk);
  EXPECT_FALSE(engine.SaveUnlessObjected());
  EXPECT_FALSE(machine.files.Exists("C:\\Data\\Tarnvale.ini"));
}

TEST_F(EngineTest, SettingsThatMeetNoneAreSaved) {
  Add("C:\\a.txt");
  engine.settings.DestinationDir = "D:\\Store";
  engine.settings.EachText = "01:00";
  EXPECT_TRUE(engine.SaveUnlessObjected());
  EXPECT_TRUE(machine.files.Exists("C:\\Data\\Tarnvale.ini"));
}

TEST_F(EngineTest, TheLogIsOpenedWithTheDesktopsProgram) {
  machine.files.Write("C:\\Data\\Backup Log.txt", "log");
  engine.OpenLog();
  EXPECT_THAT(machine.processes.Started(),
              ElementsAre(StartedProcess{StartKind::kOpenWithDesktop, "C:\\Data\\Backup Log.txt"}));
}

TEST_F(EngineTest, AMissingLogDoesNothingVisible) {
  engine.OpenLog();
  EXPECT_THAT(machine.processes.Started(), IsEmpty());
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

// --- a start by hand

TEST_F(EngineTest, YesShowsTheAlertAndRequestsAStart) {
  engine.run.EngineFree = "1";
  machine.boxes.Expect("Now?", BoxIcon::kQuestion, BoxAnswer::kYes);
  engine.AskAndStart("Now?");
  EXPECT_THAT(actions, ElementsAre("alert"));
  EXPECT_TRUE(engine.timers[EngineTimer::kRunPause].Enabled);
  EXPECT_EQ(machine.boxes.Shown().at(0).buttons, BoxButtons::kYesNo);
}

TEST_F(EngineTest, NoDoesNothing) {
  engine.run.EngineFree = "1";
  machine.boxes.Answer(BoxAnswer::kNo);
  engine.AskAndStart("Now?");
  EXPECT_THAT(actions, IsEmpty());
  EXPECT_FALSE(engine.timers[EngineTimer::kRunPause].Enabled);
}

TEST_F(EngineTest, AStartByHandIsRequestedWithoutTheAlertToo) {
  engine.settings.ShowAlert = false;
  engine.run.EngineFree = "1";
  machine.boxes.Answer(BoxAnswer::kYes);
  engine.AskAndStart("Now?");
  EXPECT_THAT(actions, IsEmpty());
  EXPECT_TRUE(engine.timers[EngineTimer::kRunPause].Enabled);
}

TEST_F(EngineTest, ABusyEngineKeepsTheAlertAwayAndNotTheRequest) {
  machine.boxes.Answer(BoxAnswer::kYes);
  engine.AskAndStart("Now?");
  EXPECT_THAT(actions, IsEmpty());
  EXPECT_TRUE(engine.timers[EngineTimer::kRunPause].Enabled);
}

TEST_F(EngineTest, AStartByHandLeavesTheReferenceOfTheIntervalAlone) {
  engine.settings.LoadMinute = MakeTime({9, 0, 0});
  machine.boxes.Answer(BoxAnswer::kYes);
  engine.AskAndStart("Now?");
  machine.Advance(20s);
  EXPECT_EQ(engine.settings.LoadMinute, MakeTime({9, 0, 0}));
}

// --- the displays

TEST_F(EngineTest, TheSchedulePageShowsTimeDateAndNextRun) {
  engine.settings.ScheduleAt = true;
  engine.settings.AlwaysAtTime = MakeTime({13, 5, 0});
  machine.Advance(100ms);
  EXPECT_EQ(engine.display.Now.Get(), "11:00:00 AM");
  EXPECT_EQ(engine.display.Today.Get(), "Friday, March 14, 2008");
  EXPECT_EQ(engine.display.NextRun.Get(), "1:05:00 PM");
  machine.Advance(1s);
  EXPECT_EQ(engine.display.Now.Get(), "11:00:01 AM");
}

TEST_F(EngineTest, TheSchedulePageSaysWhenNothingIsScheduled) {
  machine.Advance(100ms);
  EXPECT_EQ(engine.display.NextRun.Get(), "No Backup Has Scheduled");
}

TEST_F(EngineTest, TheNextRunOfAnIntervalIsItsEndAsATimeOfDay) {
  engine.settings.EachTime = MakeTime({1, 30, 0});
  engine.settings.LoadMinute = MakeTime({22, 45, 0});
  machine.Advance(100ms);
  EXPECT_EQ(engine.display.NextRun.Get(), "12:15:00 AM");
}

TEST_F(EngineTest, TheNextRunDoesNotLookAtTheChosenDays) {
  engine.settings.ScheduleAt = true;
  engine.settings.AlwaysAtTime = MakeTime({13, 5, 0});
  engine.settings.EveryDay = false;
  machine.Advance(100ms);
  EXPECT_EQ(engine.display.NextRun.Get(), "1:05:00 PM");
}

TEST_F(EngineTest, TheNextRunIsThatOfTheChosenSchedule) {
  engine.settings.AlwaysAtTime = MakeTime({13, 5, 0});
  machine.Advance(100ms);
  EXPECT_EQ(engine.display.NextRun.Get(), "No Backup Has Scheduled");
}

TEST_F(EngineTest, TheTrayTipShowsTheNextRun) {
  engine.settings.ScheduleAt = true;
  engine.settings.AlwaysAtTime = MakeTime({13, 5, 0});
  machine.Advance(999ms);
  EXPECT_EQ(engine.display.TrayTip.Get(), "");
  machine.Advance(1ms);
  EXPECT_EQ(engine.display.TrayTip.Get(), "Tarnvale [Next Scedule On: 1:05:00 PM]");
}

TEST_F(EngineTest, TheTrayTipHasNothingInItsBracketWhenNothingIsScheduled) {
  machine.Advance(1s);
  EXPECT_EQ(engine.display.TrayTip.Get(), "Tarnvale [Next Scedule On: ]");
}

}  // namespace
}  // namespace tarnvale::testing
