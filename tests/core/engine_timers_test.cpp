#include "core/engine_timers.h"

#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr bool kOn = true;
constexpr bool kOff = false;

struct Wiring {
  EngineTimer timer;
  int number;
  int interval_ms;
  bool on_at_start;
};

using enum EngineTimer;

const Wiring kWiring[] = {
    {kSchedule, 1, 59000, kOn},
    {kPaneFilters, 2, 500, kOn},
    {kStorageTree, 3, 500, kOn},
    {kAutoSettingsLink, 4, 100, kOff},
    {kNextRun, 5, 100, kOn},
    {kUnused6, 6, 59999, kOn},
    {kRunStart, 7, 8000, kOff},
    {kRunPause, 8, 100, kOff},
    {kRestoreBar, 9, 100, kOff},
    {kEngineFree, 10, 100, kOn},
    {kFolderTrees, 11, 500, kOn},
    {kTrayTip, 12, 1000, kOn},
    {kWizardPage, 13, 1000, kOff},
    {kSummary, 14, 500, kOn},
    {kReport, 15, 100, kOn},
    {kSyncMode, 16, 200, kOn},
    {kRestoreSourceTree, 17, 200, kOn},
    {kRestoreTargetTree, 18, 200, kOn},
    {kUnused19, 19, 1000, kOff},
    {kDataFolderWatch, 20, 100, kOff},
    {kDataFolderArming, 21, 5000, kOn},
};

class WiringTest : public ::testing::TestWithParam<Wiring> {
 protected:
  FakeMachine machine;
  EngineTimers timers{machine.loop.Timers()};
};

TEST_P(WiringTest, HasItsNumberIntervalAndStartState) {
  const Wiring& row = GetParam();
  EXPECT_EQ(static_cast<int>(row.timer), row.number);
  EXPECT_EQ(timers[row.timer].IntervalMs(), row.interval_ms);
  EXPECT_EQ(timers[row.timer].Enabled, row.on_at_start);
}

TEST_P(WiringTest, CallsItsOwnHandlerAtEachTickAndNoOther) {
  int ticks = 0;
  int others = 0;
  for (const Wiring& row : kWiring) {
    const bool own = row.timer == GetParam().timer;
    timers[row.timer].Enabled = own;
    timers.At(row.timer, [&count = own ? ticks : others] { ++count; });
  }
  machine.Advance(std::chrono::milliseconds(3 * GetParam().interval_ms));
  EXPECT_EQ(ticks, 3);
  EXPECT_EQ(others, 0);
}

INSTANTIATE_TEST_SUITE_P(Timers, WiringTest, ::testing::ValuesIn(kWiring), [](const auto& test) {
  return "Timer" + std::to_string(test.param.number);
});

// --- which enables which

class StartRoadTest : public EngineFixture {
 protected:
  StartRoadTest() {
    engine.settings.SaveLog = false;
    engine.stages.FollowCopy = [this] { runs.push_back(machine.formats.LongTime(Now())); };
  }

  DateTime Now() { return machine.clock.Now(); }
  void RequestStart() { engine.timers[EngineTimer::kRunPause].Enabled = true; }

  std::vector<std::string> runs;
};

TEST_F(StartRoadTest, TheRunPauseEnablesTheRunStartAndStops) {
  RequestStart();
  machine.Advance(100ms);
  EXPECT_FALSE(engine.timers[EngineTimer::kRunPause].Enabled);
  EXPECT_TRUE(engine.timers[EngineTimer::kRunStart].Enabled);
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
  engine.stages.FollowCopy = [&] { on_in_run = engine.timers[EngineTimer::kRunStart].Enabled; };
  machine.Advance(10s);
  EXPECT_TRUE(on_in_run);
  EXPECT_FALSE(engine.timers[EngineTimer::kRunStart].Enabled);
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
  EXPECT_FALSE(engine.timers[EngineTimer::kRunStart].Enabled);
  EXPECT_FALSE(engine.timers[EngineTimer::kRunPause].Enabled);
}

// --- the watch over the data folder

class DataFolderWatchTest : public EngineFixture {
 protected:
  DataFolderWatchTest() {
    machine.files.Write("C:\\Program\\Quit.exe", "");
    machine.files.AddDrive("U");
    machine.files.MakeFolder("U:\\Data");
    engine.settings.DataFolder = "U:\\Data";
    engine.stages.RemoveTrayIcon = [this] { actions.push_back("remove icon"); };
  }

  std::size_t QuitStarts() const { return machine.processes.Started().size(); }
};

TEST_F(DataFolderWatchTest, BeginsAfterFiveSeconds) {
  machine.Advance(4999ms);
  EXPECT_FALSE(engine.timers[EngineTimer::kDataFolderWatch].Enabled);
  machine.Advance(1ms);
  EXPECT_TRUE(engine.timers[EngineTimer::kDataFolderWatch].Enabled);
}

TEST_F(DataFolderWatchTest, IsArmedAnewEveryFiveSeconds) {
  machine.Advance(5s);
  engine.timers[EngineTimer::kDataFolderWatch].Enabled = false;
  machine.Advance(5s);
  EXPECT_TRUE(engine.timers[EngineTimer::kDataFolderWatch].Enabled);
  EXPECT_TRUE(engine.timers[EngineTimer::kDataFolderArming].Enabled);
}

TEST_F(DataFolderWatchTest, DoesNothingWhileTheFolderIsThere) {
  machine.Advance(10min);
  EXPECT_EQ(QuitStarts(), 0U);
  EXPECT_THAT(actions, IsEmpty());
}

TEST_F(DataFolderWatchTest, ARemovedDriveEndsTheProgramWithin100Milliseconds) {
  machine.Advance(7s);
  machine.files.RemoveDrive("U");
  machine.Advance(100ms);
  EXPECT_THAT(actions, ElementsAre("remove icon"));
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
