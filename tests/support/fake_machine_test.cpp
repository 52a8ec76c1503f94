#include "tests/support/fake_machine.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class FakeMachineTest : public ::testing::Test {
 protected:
  FakeMachine machine;
};

TEST_F(FakeMachineTest, StandsAtElevenOnAFriday) {
  EXPECT_EQ(machine.formats.GeneralDate(machine.clock.Now()), "3/14/2008 11:00:00 AM");
  EXPECT_EQ(WeekdayOf(machine.clock.Now()), 6);
}

TEST_F(FakeMachineTest, AdvanceTicksInTheOrderOfDueMomentsWithTheClockStandingThere) {
  std::vector<std::string> ticks;
  Timer slow(machine.loop.Timers(), 3000, true);
  Timer fast(machine.loop.Timers(), 2000, true);
  slow.Tick.Listen(
      [&] { ticks.push_back("slow " + machine.formats.LongTime(machine.clock.Now())); });
  fast.Tick.Listen(
      [&] { ticks.push_back("fast " + machine.formats.LongTime(machine.clock.Now())); });
  machine.Advance(4500ms);
  EXPECT_THAT(ticks, ElementsAre("fast 11:00:02 AM", "slow 11:00:03 AM", "fast 11:00:04 AM"));
  EXPECT_DOUBLE_EQ(machine.clock.SecondsSinceMidnight(), 11 * 3600 + 4.5);
}

TEST_F(FakeMachineTest, SettingTheWallClockTicksNothing) {
  int ticks = 0;
  Timer timer(machine.loop.Timers(), 1000, true);
  timer.Tick.Listen([&] { ++ticks; });
  machine.SetTime("23:59:59");
  machine.SetDate({2009, 1, 1});
  machine.loop.Yield();
  EXPECT_EQ(ticks, 0);
  machine.Advance(1s);
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(machine.formats.GeneralDate(machine.clock.Now()), "1/2/2009");
}

TEST_F(FakeMachineTest, YieldRunsPostedJobsAndScriptedActions) {
  std::vector<std::string> actions;
  machine.loop.Post([&] { actions.push_back("job"); });
  machine.loop.OnYield(2, [&] { actions.push_back("second"); });
  machine.loop.Yield();
  EXPECT_THAT(actions, ElementsAre("job"));
  machine.loop.Yield();
  EXPECT_THAT(actions, ElementsAre("job", "second"));
  EXPECT_EQ(machine.loop.YieldCount(), 2);
}

TEST_F(FakeMachineTest, WaitPassMovesTheTimeWhenNothingIsPending) {
  bool done = false;
  Timer timer(machine.loop.Timers(), 100, true);
  timer.Tick.Listen([&] { done = true; });
  int passes = 0;
  while (!done) {
    machine.loop.WaitPass();
    ++passes;
  }
  EXPECT_EQ(passes, 10);
}

TEST_F(FakeMachineTest, NothingIsServedAfterQuit) {
  int ticks = 0;
  Timer timer(machine.loop.Timers(), 1000, true);
  timer.Tick.Listen([&] {
    ++ticks;
    machine.loop.Quit(7);
  });
  machine.Advance(10s);
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(machine.loop.QuitCode(), 7);
  EXPECT_EQ(machine.loop.Run(), 7);
  EXPECT_EQ(ticks, 2);
}

TEST_F(FakeMachineTest, AnUnexpectedFaultFailsTheTestAndAnExpectedOneDoesNot) {
  machine.ExpectFault(53);
  machine.loop.Deliver([] { throw ProgramError(kFileNotFound); });
  EXPECT_NONFATAL_FAILURE(machine.loop.Deliver([] { throw ProgramError(kDiskFull); }), "61");
}

TEST_F(FakeMachineTest, FilesComeAndGoWithoutRegardToCase) {
  machine.files.Write("C:\\Data\\a.txt", "hello");
  EXPECT_EQ(machine.files.Content("c:\\DATA\\A.TXT"), "hello");
  EXPECT_THAT(machine.files.Names("C:\\"), ElementsAre("Data", "Program"));
  EXPECT_EQ(machine.files.Attributes("C:\\Data\\a.txt"), 32);
  EXPECT_EQ(machine.files.Modified("C:\\Data\\a.txt"), 1205492400);
  EXPECT_FALSE(machine.files.Exists("C:\\Data\\b.txt"));
}

TEST_F(FakeMachineTest, TheArchiveBitComesBackWhenContentOrTimeChanges) {
  machine.files.Write("C:\\a.txt", "hello");
  machine.files.SetAttributes("C:\\a.txt", 0);
  EXPECT_EQ(machine.files.Attributes("C:\\a.txt"), 0);
  machine.files.SetModified("C:\\a.txt", 1000);
  EXPECT_EQ(machine.files.Attributes("C:\\a.txt"), 32);
  machine.files.SetAttributes("C:\\a.txt", 0);
  machine.files.Write("C:\\a.txt", "hello");
  EXPECT_EQ(machine.files.Attributes("C:\\a.txt"), 32);
}

TEST_F(FakeMachineTest, DrivesComeAndGo) {
  EXPECT_EQ(RaisedBy([&] { machine.files.Length("D:\\a.txt"); }), 76);
  machine.files.AddDrive("D");
  machine.files.Write("D:\\a.txt", "hello");
  machine.open_files.OpenInput(1, "D:\\a.txt");
  machine.files.RemoveDrive("D");
  EXPECT_FALSE(machine.files.FolderExists("D:\\"));
  EXPECT_EQ(RaisedBy([&] { machine.open_files.Read(1, 5); }), 57);
}

TEST_F(FakeMachineTest, FailuresComeByScript) {
  machine.files.Write("C:\\a.txt", "hello");
  const auto copy = [&] { machine.files.CopyWhole("C:\\a.txt", "C:\\b.txt"); };
  machine.files.FailNext("CopyWhole", 61);
  EXPECT_EQ(RaisedBy(copy), 61);
  EXPECT_EQ(RaisedBy(copy), 0);
  machine.files.FailOn("CopyWhole", "C:\\B.txt", 70);
  EXPECT_EQ(RaisedBy(copy), 70);
  EXPECT_EQ(RaisedBy(copy), 70);
  EXPECT_EQ(RaisedBy([&] { machine.files.CopyWhole("C:\\a.txt", "C:\\c.txt"); }), 0);
  machine.files.ClearFailures();
  machine.files.FailAlways("Length", 57);
  EXPECT_EQ(RaisedBy(copy), 0);
  EXPECT_EQ(RaisedBy([&] { machine.files.Length("C:\\a.txt"); }), 57);
}

TEST_F(FakeMachineTest, CallsAreRecorded) {
  machine.files.Write("C:\\a.txt", "hello");
  machine.files.CopyWhole("C:\\a.txt", "C:\\b.txt");
  machine.files.SetAttributes("C:\\b.txt", 0);
  EXPECT_THAT(machine.files.Calls(),
              ElementsAre("CopyWhole C:\\a.txt -> C:\\b.txt", "SetAttributes C:\\b.txt -> 0"));
  EXPECT_EQ(machine.files.CallsOf("CopyWhole"), 1);
}

TEST_F(FakeMachineTest, ACopiedTreePassesOverAScriptedFailureInside) {
  machine.files.Write("C:\\a\\1.txt", "one");
  machine.files.Write("C:\\a\\2.txt", "two");
  machine.files.FailOn("CopyEntry", "C:\\a\\1.txt", 70);
  EXPECT_EQ(RaisedBy([&] { machine.files.CopyTree("C:\\a", "C:\\b", {}); }), 70);
  EXPECT_THAT(machine.files.Names("C:\\b"), ElementsAre("2.txt"));
}

TEST_F(FakeMachineTest, BoxesAreAnsweredByScript) {
  machine.boxes.Answer(BoxAnswer::kYes);
  machine.boxes.Expect("Full!", BoxIcon::kStop, BoxAnswer::kOk);
  EXPECT_EQ(machine.boxes.Show({.text = "Go?", .buttons = BoxButtons::kYesNo}), BoxAnswer::kYes);
  EXPECT_EQ(machine.boxes.Show({.text = "Full!", .icon = BoxIcon::kStop}), BoxAnswer::kOk);
  EXPECT_EQ(machine.boxes.Shown().size(), 2U);
}

TEST_F(FakeMachineTest, AnUnexpectedBoxFailsTheTest) {
  EXPECT_NONFATAL_FAILURE(machine.boxes.Show({.text = "Surprise"}), "unexpected box: Surprise");
}

TEST_F(FakeMachineTest, ABoxThatSaysSomethingElseFailsTheTest) {
  machine.boxes.Expect("Full!", BoxIcon::kNone, BoxAnswer::kOk);
  EXPECT_NONFATAL_FAILURE(machine.boxes.Show({.text = "Empty!"}), "Empty!");
}

TEST(FakeMachineEndTest, AnUnusedAnswerFailsTheTest) {
  EXPECT_NONFATAL_FAILURE(
      {
        FakeMachine machine;
        machine.boxes.Answer(BoxAnswer::kOk);
      },
      "never came");
}

TEST_F(FakeMachineTest, TimersTickWhileABoxIsOpen) {
  int ticks = 0;
  Timer timer(machine.loop.Timers(), 1000, true);
  timer.Tick.Listen([&] { ++ticks; });
  machine.boxes.Answer(BoxAnswer::kOk);
  machine.boxes.WhileOpen([&] { machine.Advance(3s); });
  machine.boxes.Show({.text = "Hello"});
  EXPECT_EQ(ticks, 3);
}

TEST_F(FakeMachineTest, ProgramsStartOnlyWhenTheyAreThere) {
  EXPECT_FALSE(machine.processes.StartProgram("C:\\Program\\Quit.exe"));
  machine.files.Write("C:\\Program\\Quit.exe", "");
  EXPECT_TRUE(machine.processes.StartProgram("C:\\Program\\Quit.exe"));
  machine.processes.StartMinimized("\"C:\\Program\\Quit.exe\" /e \"open end");
  EXPECT_THAT(machine.processes.Started(),
              ElementsAre(StartedProcess{StartKind::kProgram, "C:\\Program\\Quit.exe"},
                          StartedProcess{StartKind::kMinimized,
                                         "\"C:\\Program\\Quit.exe\" /e \"open end"}));
  machine.processes.FailStart();
  EXPECT_FALSE(machine.processes.StartProgram("C:\\Program\\Quit.exe"));
  EXPECT_EQ(machine.processes.Refused().size(), 2U);
}

TEST_F(FakeMachineTest, VariablesRandomNumbersAndFormatsAreFixed) {
  machine.processes.variables["username"] = "ann";
  EXPECT_EQ(machine.processes.Variable("username"), "ann");
  EXPECT_FALSE(machine.processes.Variable("home").has_value());
  machine.random.Script({0.25});
  EXPECT_EQ(machine.random.Next(), 0.25);
  EXPECT_EQ(machine.random.Next(), 0.5);
  EXPECT_EQ(machine.formats.LongDate(machine.clock.Now()), "Friday, March 14, 2008");
  EXPECT_EQ(machine.formats.StandardNumber(1234.5), "1,234.50");
}

TEST_F(FakeMachineTest, ProfilesLieInTheFiles) {
  machine.files.MakeFolder("C:\\Data");
  EXPECT_TRUE(machine.profiles.Write("When", "Each", "01:00", "C:\\Data\\t.ini"));
  EXPECT_FALSE(machine.files.Exists("C:\\Data\\t.ini"));
  EXPECT_TRUE(machine.profiles.Flush("C:\\Data\\t.ini"));
  EXPECT_EQ(machine.files.Content("C:\\Data\\t.ini"), "[When]\r\nEach=01:00\r\n");
  machine.profiles.FailNext("Write", 70);
  EXPECT_FALSE(machine.profiles.Write("When", "Each", "02:00", "C:\\Data\\t.ini"));
}

TEST_F(FakeMachineTest, TheBundleLeadsToTheFakes) {
  Machine& interfaces = machine.Interfaces();
  EXPECT_EQ(&interfaces.files, &machine.files);
  EXPECT_EQ(&interfaces.loop, &machine.loop);
  EXPECT_EQ(&interfaces.boxes, &machine.boxes);
}

TEST(ScriptedFailuresTest, OneThatNoCallMeetsFailsTheTest) {
  EXPECT_NONFATAL_FAILURE(
      {
        FakeMachine machine;
        machine.files.FailNext("CopyWhole", 70);
      },
      "no call met the failure of CopyWhole");
  EXPECT_NONFATAL_FAILURE(
      {
        FakeMachine machine;
        machine.files.FailOn("Delete", "C:\\other.txt", 70);
        machine.files.Write("C:\\a.txt", "a");
        machine.files.Delete("C:\\a.txt");
      },
      "no call met the failure of Delete C:\\other.txt");
  FakeMachine machine;
  machine.files.Write("C:\\a.txt", "a");
  machine.files.FailAlways("Delete", 70);
  EXPECT_EQ(RaisedBy([&] { machine.files.Delete("C:\\a.txt"); }), 70);
}

TEST_F(FakeMachineTest, AWindowThatIsMinimizedIsReportedInTheNextPassAndOnce) {
  Window window;
  int reports = 0;
  window.Resized.Listen([&] { ++reports; });
  machine.windows.Adopt(window);
  window.State = WindowState::kMinimized;
  EXPECT_EQ(reports, 0);
  machine.loop.Yield();
  machine.loop.Yield();
  EXPECT_EQ(reports, 1);
  machine.windows.Drop(window);
  window.State = WindowState::kNormal;
  machine.loop.Yield();
  EXPECT_EQ(reports, 1);
}

}  // namespace
}  // namespace tarnvale::testing
