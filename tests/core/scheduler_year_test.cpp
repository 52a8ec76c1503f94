// A year of the scheduler's ticks, against a count made another way.
#include <functional>

#include "core/scheduler.h"
#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

constexpr int kTickSeconds = 59;
constexpr int kDaySeconds = 86400;
constexpr int kYearSeconds = 365 * kDaySeconds;

// The test machine begins on a Friday at 11:00.
constexpr int kStartSecond = 11 * 3600;
constexpr int kFriday = 5;  // Sunday is 0

class SchedulerYearTest : public EngineFixture {
 protected:
  SchedulerYearTest() {
    engine.timers.Stop();
    engine.timers[EngineTimer::kSchedule].Enabled = true;
    engine.screens.Show = [this](Screen) { ++matches; };
    // The request ends here: no run of the year is of interest.
    engine.timers[EngineTimer::kRunPause].Enabled.Changed.Listen(
        [this] { engine.timers[EngineTimer::kRunPause].Enabled = false; });
  }

  // Calls `at` with the minute of the day and the day of the week of each tick.
  static void EachTick(const std::function<void(int minute, int weekday)>& at) {
    for (int elapsed = kTickSeconds; elapsed <= kYearSeconds; elapsed += kTickSeconds) {
      const int second = kStartSecond + elapsed;
      at(second / 60 % 1440, (kFriday + second / kDaySeconds) % 7);
    }
  }

  void PassAYear() { machine.Advance(std::chrono::seconds(kYearSeconds)); }

  int matches = 0;
};

TEST_F(SchedulerYearTest, FixedTimeFiresAtEveryTickOfItsMinute) {
  engine.settings.ScheduleAt = true;
  engine.settings.AlwaysAtTime = MakeTime({12, 0, 0});
  int expected = 0;
  EachTick([&](int minute, int) { expected += minute == 720 ? 1 : 0; });
  PassAYear();
  EXPECT_EQ(matches, expected);
  // No day is passed over, and some have two.
  EXPECT_GT(expected, 365);
}

TEST_F(SchedulerYearTest, IntervalFiresOnceAtEveryEndAcrossMidnights) {
  engine.settings.EachTime = MakeTime({1, 37, 0});
  engine.settings.LoadMinute = MakeTime({11, 0, 0});
  int expected = 0;
  int reference = 660;
  EachTick([&](int minute, int) {
    if (minute != (reference + 97) % 1440) return;
    ++expected;
    reference = minute;
  });
  PassAYear();
  EXPECT_EQ(matches, expected);
  EXPECT_EQ(expected, 365 * 1440 / 97);
  EXPECT_EQ(
      TimeOf(engine.settings.LoadMinute).hour * 60 + TimeOf(engine.settings.LoadMinute).minute,
      reference);
}

TEST_F(SchedulerYearTest, ChosenDaysFireOnNoOtherDay) {
  engine.settings.ScheduleAt = true;
  engine.settings.AlwaysAtTime = MakeTime({23, 59, 0});
  engine.settings.WeekDays[0] = true;
  engine.settings.WeekDays[3] = true;
  int expected = 0;
  EachTick([&](int minute, int weekday) {
    expected += minute == 1439 && (weekday == 0 || weekday == 3) ? 1 : 0;
  });
  PassAYear();
  EXPECT_EQ(matches, expected);
  EXPECT_GE(expected, 104);
}

TEST_F(SchedulerYearTest, AnIntervalOnChosenDaysWaitsWhereADayStopsIt) {
  engine.settings.EachTime = MakeTime({7, 0, 0});
  engine.settings.LoadMinute = MakeTime({11, 0, 0});
  for (const std::size_t day : {1U, 2U, 4U}) engine.settings.WeekDays[day] = true;
  int expected = 0;
  int reference = 660;
  EachTick([&](int minute, int weekday) {
    if (weekday != 1 && weekday != 2 && weekday != 4) return;
    if (minute != (reference + 420) % 1440) return;
    ++expected;
    reference = minute;
  });
  PassAYear();
  EXPECT_EQ(matches, expected);
  EXPECT_GT(expected, 156);
}

}  // namespace
}  // namespace tarnvale::testing
