#include "ui/paced_loop.h"

#include <gmock/gmock.h>

#include <deque>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace tarnvale::testing {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A host whose sleeps take the virtual time that they are given.
class ScriptedLoop final : public PacedLoop {
 public:
  ScriptedLoop() : PacedLoop([this] { return now; }) {}

  void Post(std::function<void()> job) override { jobs.push_back(std::move(job)); }
  using PacedLoop::RunDue;
  using PacedLoop::SetAlarm;

  std::chrono::nanoseconds now = 1h;
  std::vector<milliseconds> pumps;
  std::vector<std::optional<milliseconds>> alarms;
  std::deque<std::function<void()>> jobs;
  std::function<void()> on_rescheduled;

 private:
  void Pump(milliseconds wait) override {
    pumps.push_back(wait);
    if (jobs.empty()) {
      now += wait;
      return;
    }
    const auto job = std::move(jobs.front());
    jobs.pop_front();
    Deliver(job);
  }
  void Serve() override {
    while (!IsEnding()) Pass();
  }
  void StartAlarm(std::optional<milliseconds> wait) override { alarms.push_back(wait); }
  void OnRescheduled() override {
    if (on_rescheduled) on_rescheduled();
  }
};

class PacedLoopTest : public ::testing::Test {
 protected:
  ScriptedLoop loop;
};

TEST_F(PacedLoopTest, PassesWithinTwoMillisecondsCountAsOne) {
  loop.Yield();
  loop.now += 1ms;
  loop.Yield();
  EXPECT_THAT(loop.pumps, ElementsAre(0ms));
  loop.now += 1ms;
  loop.Yield();
  EXPECT_THAT(loop.pumps, ElementsAre(0ms, 0ms));
}

TEST_F(PacedLoopTest, ATimerThatIsDueIsNotLeftToTheNextPass) {
  Timer timer(loop.Timers(), 11, true);
  int ticks = 0;
  timer.Tick.Listen([&] { ++ticks; });
  loop.now += 10ms;
  loop.Yield();
  loop.now += 1ms;
  loop.Yield();
  EXPECT_EQ(ticks, 1);
}

TEST_F(PacedLoopTest, AWaitSleepsTenMillisecondsUnlessATimerIsDue) {
  Timer timer(loop.Timers(), 5, true);
  loop.WaitPass();
  timer.Enabled = false;
  timer.Enabled = true;
  loop.now += 5ms;
  loop.WaitPass();
  EXPECT_THAT(loop.pumps, ElementsAre(10ms, 0ms));
}

TEST_F(PacedLoopTest, TheAlarmIsStartedOncePerDueMomentAndStoppedWithTheLastTimer) {
  Timer later(loop.Timers(), 500, true);
  loop.SetAlarm();
  loop.SetAlarm();
  Timer sooner(loop.Timers(), 20, true);
  loop.SetAlarm();
  EXPECT_THAT(loop.alarms, ElementsAre(500ms, 20ms));
  later.Enabled = false;
  sooner.Enabled = false;
  loop.RunDue();
  loop.SetAlarm();
  EXPECT_EQ(loop.alarms.back(), std::nullopt);
}

// It may wait in a loop of the system's own, which sleeps.
TEST_F(PacedLoopTest, TheAlarmCanBeStartedForTheOthersBeforeAHandlerRuns) {
  loop.on_rescheduled = [&] { loop.SetAlarm(); };
  Timer first(loop.Timers(), 20, true);
  Timer other(loop.Timers(), 30, true);
  first.Tick.Listen([&] { EXPECT_EQ(loop.alarms.back(), 10ms); });
  loop.now += 20ms;
  loop.Yield();
  EXPECT_EQ(loop.pumps.size(), 1U);
}

TEST_F(PacedLoopTest, QuitBeforeRunLetsItReturnAtOnce) {
  loop.Quit(7);
  EXPECT_EQ(loop.Run(), 7);
  EXPECT_THAT(loop.pumps, IsEmpty());
}

TEST_F(PacedLoopTest, AHandlerThatGoesOnForMoreThanASecondAfterQuitIsReported) {
  std::vector<int> reports;
  loop.Lingering.Listen([&](int code) { reports.push_back(code); });
  loop.Post([&] {
    loop.Quit(3);
    loop.now += 1s;
    loop.WaitPass();
    EXPECT_THAT(reports, IsEmpty());
    loop.WaitPass();
    EXPECT_THAT(reports, ElementsAre(3));
  });
  EXPECT_EQ(loop.Run(), 3);
}

TEST_F(PacedLoopTest, AnotherQuitChangesTheCodeAndNotSinceWhenTheEndIsWaitedFor) {
  std::vector<int> reports;
  loop.Lingering.Listen([&](int code) { reports.push_back(code); });
  loop.Post([&] {
    loop.Quit(3);
    loop.now += 1001ms;
    loop.Quit(4);
    loop.WaitPass();
  });
  EXPECT_EQ(loop.Run(), 4);
  EXPECT_THAT(reports, ElementsAre(4));
}

TEST_F(PacedLoopTest, NobodyLingersWhereNoLoopRuns) {
  bool has_lingered = false;
  loop.Lingering.Listen([&](int) { has_lingered = true; });
  loop.Quit(3);
  loop.now += 2s;
  loop.Yield();
  EXPECT_FALSE(has_lingered);
}

TEST_F(PacedLoopTest, EachPassWithinAnotherIsOneMore) {
  int inner = 0;
  EXPECT_EQ(loop.Nesting(), 0);
  loop.Post([&] {
    loop.Post([&] { inner = loop.Nesting(); });
    loop.WaitPass();
  });
  loop.Yield();
  EXPECT_EQ(inner, 2);
}

}  // namespace
}  // namespace tarnvale::testing
