#include "core/engine_timers.h"

#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr bool kOn = true;
constexpr bool kOff = false;

struct Wiring {
  int number;
  int interval_ms;
  bool on_at_start;
  std::function<void()> EngineTicks::*tick;
};

using T = EngineTicks;

const Wiring kWiring[] = {
    {1, 59000, kOn, &T::TestSchedule},
    {2, 500, kOn, &T::MirrorPaneFilters},
    {3, 500, kOn, &T::OpenStorageTree},
    {4, 100, kOff, &T::LinkAutoSettings},
    {5, 100, kOn, &T::ShowNextRun},
    {6, 59999, kOn, nullptr},
    {7, 8000, kOff, &T::StartRun},
    {8, 100, kOff, &T::EndPause},
    {9, 100, kOff, &T::AdvanceRestoreBar},
    {10, 100, kOn, &T::ComputeEngineFree},
    {11, 500, kOn, &T::FollowFolderTrees},
    {12, 1000, kOn, &T::ShowTrayTip},
    {13, 1000, kOff, &T::ShowWizardPage},
    {14, 500, kOn, &T::ShowSummary},
    {15, 100, kOn, &T::AllowReport},
    {16, 200, kOn, &T::AllowSyncMode},
    {17, 200, kOn, &T::OpenRestoreSourceTree},
    {18, 200, kOn, &T::OpenRestoreTargetTree},
    {19, 1000, kOff, nullptr},
    {20, 100, kOff, &T::WatchDataFolder},
    {21, 5000, kOn, &T::ArmDataFolderWatch},
};

class WiringTest : public ::testing::TestWithParam<Wiring> {
 protected:
  FakeMachine machine;
  EngineTimers timers{machine.loop.Timers()};
};

TEST_P(WiringTest, HasItsIntervalAndStartState) {
  Timer& timer = timers.Number(GetParam().number);
  EXPECT_EQ(timer.IntervalMs(), GetParam().interval_ms);
  EXPECT_EQ(timer.Enabled, GetParam().on_at_start);
}

TEST_P(WiringTest, DoesItsOwnDeedAtEachTickAndNoOther) {
  for (int number = 1; number <= 21; ++number) {
    timers.Number(number).Enabled = number == GetParam().number;
  }
  int ticks = 0;
  int others = 0;
  for (const Wiring& row : kWiring) {
    if (row.tick != nullptr) timers.ticks.*row.tick = [&others] { ++others; };
  }
  if (GetParam().tick != nullptr) timers.ticks.*GetParam().tick = [&ticks] { ++ticks; };
  machine.Advance(std::chrono::milliseconds(3 * GetParam().interval_ms));
  EXPECT_EQ(ticks, GetParam().tick == nullptr ? 0 : 3);
  EXPECT_EQ(others, 0);
}

INSTANTIATE_TEST_SUITE_P(Timers, WiringTest, ::testing::ValuesIn(kWiring), [](const auto& test) {
  return "Timer" + std::to_string(test.param.number);
});

TEST(EngineTimerTableTest, HasTwentyOneRowsInOrder) {
  ASSERT_EQ(EngineTimerTable().size(), 21U);
  for (int number = 1; number <= 21; ++number) {
    EXPECT_EQ(EngineTimerTable()[static_cast<std::size_t>(number - 1)].number, number);
  }
}

// --- which enables which

class StartRoadTest : public EngineFixture {
 protected:
  StartRoadTest() {
    engine.settings.SaveLog = false;
    engine.stages.FollowCopy = [this] { runs.push_back(machine.formats.LongTime(Now())); };
  }

  DateTime Now() { return machine.clock.Now(); }
  void RequestStart() { engine.timers.RunPause().Enabled = true; }

  std::vector<std::string> runs;
};

TEST_F(StartRoadTest, TheRunPauseEnablesTheRunStartAndStops) {
  RequestStart();
  machine.Advance(100ms);
  EXPECT_FALSE(engine.timers.RunPause().Enabled);
  EXPECT_TRUE(engine.timers.RunStart().Enabled);
}

TEST_F(StartRoadTest, ARunBeginsEightSecondsAndATenthAfterItsRequest) {
  RequestStart();
  machine.Advance(8099ms);
  EXPECT_THAT(runs, IsEmpty());
  machine.Advance(1ms);
  EXPECT_THAT(runs, ElementsAre("11:00:08 AM"));
}

TEST_F(StartRoadTest, TheRunStartStopsWhenTheRunReturns) {
  RequestStart();
  bool on_in_run = false;
  engine.stages.FollowCopy = [&] { on_in_run = engine.timers.RunStart().Enabled; };
  machine.Advance(10s);
  EXPECT_TRUE(on_in_run);
  EXPECT_FALSE(engine.timers.RunStart().Enabled);
}

TEST_F(StartRoadTest, ASecondTickDuringALongRunStartsNothing) {
  int runs_begun = 0;
  engine.stages.FollowCopy = [&] {
    ++runs_begun;
    machine.Advance(60s);
  };
  RequestStart();
  machine.Advance(120s);
  EXPECT_EQ(runs_begun, 1);
}

TEST_F(StartRoadTest, ARequestDuringARunIsGivenUpWithThatRun) {
  int runs_begun = 0;
  engine.stages.FollowCopy = [&] {
    ++runs_begun;
    RequestStart();
    machine.Advance(60s);
  };
  RequestStart();
  machine.Advance(120s);
  EXPECT_EQ(runs_begun, 1);
}

TEST_F(StartRoadTest, ARequestAfterARunStartsTheNext) {
  RequestStart();
  machine.Advance(10s);
  RequestStart();
  machine.Advance(10s);
  EXPECT_THAT(runs, ElementsAre("11:00:08 AM", "11:00:18 AM"));
}

TEST_F(StartRoadTest, NothingRunsWithoutARequest) {
  machine.Advance(10min);
  EXPECT_THAT(runs, IsEmpty());
  EXPECT_FALSE(engine.timers.RunStart().Enabled);
  EXPECT_FALSE(engine.timers.RunPause().Enabled);
}

// --- the watch over the data folder

class DataFolderWatchTest : public EngineFixture {
 protected:
  DataFolderWatchTest() {
    machine.files.Write("C:\\Program\\Quit.exe", "");
    machine.files.AddDrive("U");
    machine.files.MakeFolder("U:\\Data");
    engine.settings.DataFolder = "U:\\Data";
    engine.stages.RemoveTrayIcon = [this] { deeds.push_back("remove icon"); };
  }

  std::size_t QuitStarts() const { return machine.processes.Started().size(); }
};

TEST_F(DataFolderWatchTest, BeginsAfterFiveSeconds) {
  machine.Advance(4999ms);
  EXPECT_FALSE(engine.timers.DataFolderWatch().Enabled);
  machine.Advance(1ms);
  EXPECT_TRUE(engine.timers.DataFolderWatch().Enabled);
}

TEST_F(DataFolderWatchTest, IsArmedAnewEveryFiveSeconds) {
  machine.Advance(5s);
  engine.timers.DataFolderWatch().Enabled = false;
  machine.Advance(5s);
  EXPECT_TRUE(engine.timers.DataFolderWatch().Enabled);
  EXPECT_TRUE(engine.timers.Number(21).Enabled);
}

TEST_F(DataFolderWatchTest, DoesNothingWhileTheFolderIsThere) {
  machine.Advance(10min);
  EXPECT_EQ(QuitStarts(), 0U);
  EXPECT_THAT(deeds, IsEmpty());
}

TEST_F(DataFolderWatchTest, ARemovedDriveEndsTheProgramWithin100Milliseconds) {
  machine.Advance(7s);
  machine.files.RemoveDrive("U");
  machine.Advance(100ms);
  EXPECT_THAT(deeds, ElementsAre("remove icon"));
  EXPECT_THAT(machine.processes.Started(),
              ElementsAre(StartedProcess{StartKind::kProgram, "C:\\Program\\Quit.exe"}));
}

TEST_F(DataFolderWatchTest, ADriveRemovedEarlierWaitsForTheFirstFiveSeconds) {
  machine.files.RemoveDrive("U");
  machine.Advance(5s);
  EXPECT_EQ(QuitStarts(), 0U);
  machine.Advance(100ms);
  EXPECT_EQ(QuitStarts(), 1U);
}

TEST_F(DataFolderWatchTest, StartsTheQuitProgramAgainEvery100Milliseconds) {
  machine.Advance(7s);
  machine.files.RemoveDrive("U");
  machine.Advance(1s);
  EXPECT_EQ(QuitStarts(), 10U);
}

TEST_F(DataFolderWatchTest, AnEmptyDataFolderCountsAsMissing) {
  engine.settings.DataFolder = "";
  machine.Advance(5100ms);
  EXPECT_EQ(QuitStarts(), 1U);
}

TEST_F(DataFolderWatchTest, AFileInItsPlaceCountsAsMissing) {
  machine.files.Remove("U:\\Data");
  machine.files.Write("U:\\Data", "a file");
  machine.Advance(5100ms);
  EXPECT_EQ(QuitStarts(), 1U);
}

TEST_F(DataFolderWatchTest, GoesOnDuringARun) {
  machine.Advance(6s);
  engine.stages.FollowCopy = [this] {
    machine.files.RemoveDrive("U");
    machine.Advance(100ms);
  };
  engine.run.EngineFree = "1";
  engine.backup.RunBackup();
  EXPECT_EQ(QuitStarts(), 1U);
}

}  // namespace
}  // namespace tarnvale::testing
