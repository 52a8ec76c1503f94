// A year of the scheduler's ticks, against a count made another way.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <random>

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

// --- schedules by chance, under a clock that jumps

class OneYear : public SchedulerYearTest {
 public:
  void TestBody() override {}
  explicit OneYear(std::uint64_t seed) : random_(seed) {
    BackupSettings& settings = engine.settings;
    settings.ScheduleAt = Below(2) == 0;
    at_ = 1 + Below(1439);
    each_ = Below(4) == 0 ? 1 + Below(3) : 1 + Below(1439);
    reference_ = kStartSecond / 60;
    settings.AlwaysAtTime = MakeTime({at_ / 60, at_ % 60, 0});
    settings.EachTime = MakeTime({each_ / 60, each_ % 60, 0});
    settings.LoadMinute = MakeTime({reference_ / 60, reference_ % 60, 0});
    if (Below(2) == 0) return;
    for (std::size_t day = 0; day < 7; ++day) {
      every_[day] = Below(2) == 0;
      if (every_[day]) settings.WeekDays[day] = true;
    }
    // Where no day is ticked, "Every Day" stays.
    if (std::count(every_.begin(), every_.end(), true) == 0) every_.fill(true);
  }

  // Lets the year pass in pieces, between which somebody or something sets the clock.
  // Returns the matches; the test has failed where they aren't the model's.
  int Pass() {
    std::int64_t elapsed = 0;
    std::int64_t taken = 0;  // ticks
    const std::int64_t start = machine.clock.UnixSeconds();
    std::int64_t offset = 0;
    while (elapsed < kYearSeconds) {
      const std::int64_t span = 3600 + Below(10 * kDaySeconds);
      machine.Advance(std::chrono::seconds(span));
      elapsed += span;
      for (; (taken + 1) * kTickSeconds <= elapsed; ++taken) {
        Tick(start + offset + (taken + 1) * kTickSeconds);
      }
      EXPECT_EQ(matches, expected_) << "after " << elapsed << " s";
      if (HasFailure()) break;
      Jump();
      offset = machine.clock.UnixSeconds() - start - elapsed;
    }
    return matches;
  }
  int Jumps() const { return jumps_; }

 private:
  int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

  // The model.
  void Tick(std::int64_t second) {
    const int minute = static_cast<int>(second / 60 % 1440);
    const int target = engine.settings.ScheduleAt ? at_ : (reference_ + each_) % 1440;
    // The first of January 1970 was a Thursday.
    if (minute != target || !every_[static_cast<std::size_t>((second / kDaySeconds + 4) % 7)])
      return;
    ++expected_;
    reference_ = minute;
  }

  // Summer time comes or goes, somebody sets the time or the date, or nothing happens.
  void Jump() {
    const std::int64_t second = machine.clock.UnixSeconds() % kDaySeconds;
    const auto set = [&](std::int64_t to) {
      char text[16];
      std::snprintf(text, sizeof text, "%02d:%02d:%02d", static_cast<int>(to / 3600),
                    static_cast<int>(to / 60 % 60), static_cast<int>(to % 60));
      machine.SetTime(text);
      ++jumps_;
    };
    switch (Below(6)) {
      case 0:
        return set(std::min<std::int64_t>(second + 3600, kDaySeconds - 1));
      case 1:
        return set(std::max<std::int64_t>(second - 3600, 0));
      case 2:
        return set(Below(kDaySeconds));
      case 3:
        return set(kDaySeconds - 1 - Below(60));  // right before midnight
      case 4:
        machine.SetDate({2008 + Below(3), Below(2) == 0 ? 12 : 2, 28});
        ++jumps_;
        return;
      default:
        return;
    }
  }

  std::mt19937_64 random_;
  int at_ = 0;
  int each_ = 0;
  int reference_ = 0;
  std::array<bool, 7> every_{true, true, true, true, true, true, true};
  int expected_ = 0;
  int jumps_ = 0;
};

std::uint64_t Number(const char* variable, std::uint64_t otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

TEST(SchedulerModelTest, NoMatchIsMissingThatATickCouldTakeAndNoneIsTooMany) {
  const std::uint64_t seed = Number("TARNVALE_SEED", 1);
  const std::uint64_t schedules = Number("TARNVALE_SCHEDULES", 4);
  std::int64_t matches = 0;
  int jumps = 0;
  for (std::uint64_t i = 0; i < schedules; ++i) {
    SCOPED_TRACE("schedule " + std::to_string(i) + " of seed " + std::to_string(seed));
    OneYear year(seed * 1'000'003 + i);
    matches += year.Pass();
    jumps += year.Jumps();
    if (HasFailure()) return;
  }
  EXPECT_GT(matches, 0);
  std::cout << "schedule: " << schedules << " schedules of a year, " << matches << " matches, "
            << jumps << " jumps of the clock, 0 failures\n";
}

}  // namespace
}  // namespace tarnvale::testing
