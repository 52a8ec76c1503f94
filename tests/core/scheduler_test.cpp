#include "core/scheduler.h"

#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SchedulerTest : public EngineFixture {
 protected:
  SchedulerTest() {
    engine.screens.Show = [this](Screen) { ++matches; };
    engine.stages.ShowAlert = [this] { actions.push_back("alert"); };
    // Only the ways of the schedule and of its request; the run copies nothing.
    engine.timers.Stop();
    engine.timers[EngineTimer::kSchedule].Enabled = true;
    engine.run.EngineFree = "0";
    engine.timers.At(EngineTimer::kRunStart,
                     [this] { starts.push_back(machine.formats.LongTime(machine.clock.Now())); });
  }

  void AtFixedTime(TimeOfDay time) {
    engine.settings.ScheduleAt = true;
    engine.settings.AlwaysAtTime = MakeTime(time);
  }
  void EachFrom(TimeOfDay interval, TimeOfDay reference) {
    engine.settings.EachTime = MakeTime(interval);
    engine.settings.LoadMinute = MakeTime(reference);
  }

  // How many matches one tick at this time makes.
  int MatchesAt(std::string_view time) {
    machine.SetTime(time);
    const int before = matches;
    engine.scheduler.Tick();
    return matches - before;
  }

  int matches = 0;
  std::vector<std::string> starts;
};

// --- the fixed time

TEST_F(SchedulerTest, FiresInTheMinuteOfTheFixedTimeAndInNoOther) {
  AtFixedTime({12, 0, 0});
  EXPECT_EQ(MatchesAt("11:59:59"), 0);
  EXPECT_EQ(MatchesAt("12:00:00"), 1);
  EXPECT_EQ(MatchesAt("12:00:30"), 1);
  EXPECT_EQ(MatchesAt("12:01:00"), 0);
  EXPECT_EQ(MatchesAt("00:00:00"), 0);
}

TEST_F(SchedulerTest, FiresTwiceForTwoTicksHalfASecondInsideTheMinute) {
  AtFixedTime({12, 0, 0});
  machine.SetTime("12:00:00");
  machine.clock.Move(500ms);
  engine.scheduler.Tick();
  machine.clock.Move(59s);
  engine.scheduler.Tick();
  EXPECT_EQ(matches, 2);
}

TEST_F(SchedulerTest, FiresTwiceWhenTwoTicksOfItsTimerShareTheMinute) {
  AtFixedTime({12, 0, 0});
  machine.SetTime("11:59:01");
  machine.Advance(118s);
  EXPECT_EQ(matches, 2);
}

TEST_F(SchedulerTest, FiresOnceWhenOneTickOfItsTimerFallsIntoTheMinute) {
  AtFixedTime({12, 0, 0});
  machine.SetTime("11:59:11");
  machine.Advance(118s);
  EXPECT_EQ(matches, 1);
}

TEST_F(SchedulerTest, AFixedTimeThatIsNotSetNeverFires) {
  AtFixedTime({0, 0, 0});
  engine.settings.EachTime = MakeTime({1, 0, 0});
  EXPECT_EQ(MatchesAt("00:00:00"), 0);
}

TEST_F(SchedulerTest, AFixedTimeIsNotLookedAtInIntervalMode) {
  AtFixedTime({12, 0, 0});
  engine.settings.ScheduleEach = true;
  EXPECT_EQ(MatchesAt("12:00:00"), 0);
}

TEST_F(SchedulerTest, AStartAfterTheFixedTimeWaitsForTheNextDay) {
  AtFixedTime({10, 59, 0});
  engine.LoadSettings();
  AtFixedTime({10, 59, 0});
  machine.Advance(23h);
  EXPECT_EQ(matches, 0);
  machine.Advance(1h);
  EXPECT_GE(matches, 1);
}

// --- the interval

TEST_F(SchedulerTest, AnIntervalFiresAtItsEndCountedFromTheReference) {
  EachFrom({0, 30, 0}, {11, 0, 0});
  EXPECT_EQ(MatchesAt("11:29:59"), 0);
  EXPECT_EQ(MatchesAt("11:30:00"), 1);
}

TEST_F(SchedulerTest, AnIntervalFiresOnceThoughTwoTicksShareTheMinute) {
  EachFrom({0, 30, 0}, {11, 0, 0});
  EXPECT_EQ(MatchesAt("11:30:00"), 1);
  EXPECT_EQ(MatchesAt("11:30:59"), 0);
}

TEST_F(SchedulerTest, AnIntervalWrapsRoundMidnightAndGoesOnFromThere) {
  EachFrom({1, 30, 0}, {22, 45, 0});
  EXPECT_EQ(MatchesAt("00:14:59"), 0);
  EXPECT_EQ(MatchesAt("00:15:10"), 1);
  EXPECT_EQ(engine.settings.LoadMinute, MakeTime({0, 15, 0}));
  EXPECT_EQ(MatchesAt("01:45:00"), 1);
  EXPECT_EQ(engine.settings.LoadMinute, MakeTime({1, 45, 0}));
}

TEST_F(SchedulerTest, AnIntervalThatEndsAtMidnightFiresThere) {
  EachFrom({1, 0, 0}, {23, 0, 0});
  EXPECT_EQ(MatchesAt("23:59:59"), 0);
  EXPECT_EQ(MatchesAt("00:00:00"), 1);
}

TEST_F(SchedulerTest, TheLongestIntervalIsAMinuteShortOfADay) {
  EachFrom({23, 59, 0}, {11, 0, 0});
  EXPECT_EQ(MatchesAt("11:00:00"), 0);
  EXPECT_EQ(MatchesAt("10:59:00"), 1);
}

TEST_F(SchedulerTest, AnIntervalThatIsNotSetNeverFires) {
  EachFrom({0, 0, 0}, {11, 0, 0});
  engine.settings.AlwaysAtTime = MakeTime({12, 0, 0});
  EXPECT_EQ(MatchesAt("11:00:00"), 0);
}

TEST_F(SchedulerTest, AnIntervalIsNotLookedAtInFixedMode) {
  EachFrom({0, 30, 0}, {11, 0, 0});
  AtFixedTime({12, 0, 0});
  EXPECT_EQ(MatchesAt("11:30:00"), 0);
}

// --- missed minutes

TEST_F(SchedulerTest, AMissedFixedTimeStaysMissedUntilTheNextDay) {
  AtFixedTime({12, 0, 0});
  machine.SetTime("11:59:30");
  engine.scheduler.Tick();
  machine.SetTime("12:01:00");
  machine.Advance(23h);
  EXPECT_EQ(matches, 0);
  machine.Advance(1h);
  EXPECT_GE(matches, 1);
}

TEST_F(SchedulerTest, AMissedIntervalComesBackOneDayLaterWithTheReferenceUnmoved) {
  EachFrom({0, 30, 0}, {11, 0, 0});
  machine.SetTime("11:31:00");
  machine.Advance(23h);
  EXPECT_EQ(matches, 0);
  EXPECT_EQ(engine.settings.LoadMinute, MakeTime({11, 0, 0}));
  machine.Advance(1h);
  EXPECT_EQ(matches, 1);
}

TEST_F(SchedulerTest, ATickThatALongHandlerHeldUpIsNotMadeUp) {
  AtFixedTime({12, 0, 0});
  machine.SetTime("11:59:30");
  Timer busy(machine.loop.Timers(), 10000, true);
  busy.Tick.Listen([&] {
    busy.Enabled = false;
    machine.clock.Move(3min);
  });
  machine.Advance(10min);
  EXPECT_EQ(matches, 0);
}

// --- days

TEST_F(SchedulerTest, FiresOnlyOnTheChosenDays) {
  AtFixedTime({12, 0, 0});
  engine.settings.WeekDays[1] = true;  // Monday
  engine.settings.WeekDays[6] = true;  // Saturday
  std::string fired;
  for (int day = 16; day <= 22; ++day) {  // a Sunday and the week after it
    machine.SetDate({2008, 3, day});
    fired += MatchesAt("12:00:00") == 1 ? 'x' : '.';
  }
  EXPECT_EQ(fired, ".x....x");
}

TEST_F(SchedulerTest, EveryDayFiresOnAllDays) {
  AtFixedTime({12, 0, 0});
  for (int day = 16; day <= 22; ++day) {
    machine.SetDate({2008, 3, day});
    EXPECT_EQ(MatchesAt("12:00:00"), 1) << day;
  }
}

TEST_F(SchedulerTest, NothingEverRunsWithNoDayTickedAndEveryDayClear) {
  AtFixedTime({12, 0, 0});
  engine.settings.EveryDay = false;
  for (int day = 16; day <= 22; ++day) {
    machine.SetDate({2008, 3, day});
    EXPECT_EQ(MatchesAt("12:00:00"), 0) << day;
  }
}

TEST_F(SchedulerTest, TheDayIsThatOfTheTick) {
  // An interval that begins on a Friday and ends on a Saturday.
  EachFrom({2, 0, 0}, {23, 0, 0});
  engine.settings.WeekDays[5] = true;
  machine.SetDate({2008, 3, 15});
  EXPECT_EQ(MatchesAt("01:00:00"), 0);
  engine.settings.WeekDays[6] = true;
  EXPECT_EQ(MatchesAt("01:00:00"), 1);
}

// --- what a match does

TEST_F(SchedulerTest, AMatchShowsTheAlertThenTheRunPageAndRequestsAStart) {
  WatchScreens();
  engine.timers[EngineTimer::kRunPause].Enabled.Changed.Listen(
      [this] { actions.push_back("request"); });
  engine.run.EngineFree = "1";
  AtFixedTime({12, 0, 0});
  MatchesAt("12:00:00");
  EXPECT_THAT(actions, ElementsAre("alert", "show progress", "request"));
  EXPECT_TRUE(engine.timers[EngineTimer::kRunPause].Enabled);
}

TEST_F(SchedulerTest, AMatchMovesTheReferenceInEitherMode) {
  AtFixedTime({12, 0, 0});
  MatchesAt("12:00:30");
  EXPECT_EQ(engine.settings.LoadMinute, MakeTime({12, 0, 0}));
}

TEST_F(SchedulerTest, NoAlertComesWithTheAlertOff) {
  engine.run.EngineFree = "1";
  engine.settings.ShowAlert = false;
  AtFixedTime({12, 0, 0});
  EXPECT_EQ(MatchesAt("12:00:00"), 1);
  EXPECT_THAT(actions, IsEmpty());
  EXPECT_TRUE(engine.timers[EngineTimer::kRunPause].Enabled);
}

TEST_F(SchedulerTest, ABusyEngineKeepsTheAlertAwayAndNotTheRequest) {
  AtFixedTime({12, 0, 0});
  EXPECT_EQ(MatchesAt("12:00:00"), 1);
  EXPECT_THAT(actions, IsEmpty());
  EXPECT_TRUE(engine.timers[EngineTimer::kRunPause].Enabled);
}

TEST_F(SchedulerTest, AFailureLeavesTheCheckInSilence) {
  engine.run.EngineFree = "1";
  engine.stages.ShowAlert = [] { throw ProgramError(kInvalidCall); };
  AtFixedTime({12, 0, 0});
  EXPECT_EQ(MatchesAt("12:00:00"), 0);
  EXPECT_FALSE(engine.timers[EngineTimer::kRunPause].Enabled);
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

TEST_F(SchedulerTest, AMatchDuringARunMakesItsRequest) {
  AtFixedTime({11, 0, 0});
  engine.run.EngineFree = "1";
  bool requested = false;
  Add("C:\\none.txt");
  machine.loop.OnYield(1, [&] {
    engine.scheduler.Tick();
    requested = engine.timers[EngineTimer::kRunPause].Enabled;
  });
  engine.backup.RunBackup();
  EXPECT_TRUE(requested);
}

TEST_F(SchedulerTest, AScheduledRunBeginsAfterThePause) {
  AtFixedTime({12, 0, 0});
  machine.SetTime("11:59:11");
  machine.Advance(2min);
  EXPECT_THAT(starts, ElementsAre("12:00:18 PM"));
}

}  // namespace
}  // namespace tarnvale::testing
