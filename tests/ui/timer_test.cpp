#include "ui/timer.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class TimerTest : public ::testing::Test {
 protected:
  FakeMachine machine;
  TimerQueue& queue = machine.loop.Timers();
  int ticks = 0;

  void CountTicks(Timer& timer) {
    timer.Tick.Listen([this] { ++ticks; });
  }
};

TEST_F(TimerTest, TicksEachInterval) {
  Timer timer(queue, 100, true);
  CountTicks(timer);
  machine.Advance(99ms);
  EXPECT_EQ(ticks, 0);
  machine.Advance(1ms);
  EXPECT_EQ(ticks, 1);
  machine.Advance(1s);
  EXPECT_EQ(ticks, 11);
}

TEST_F(TimerTest, AHostMovesEveryTickButTheFirst) {
  queue.AlignWith([](std::chrono::nanoseconds due, int) {
    return (due + 99999999ns) / 100ms * std::chrono::nanoseconds(100ms);
  });
  machine.Advance(130ms - machine.clock.Uptime() % 100ms);
  Timer timer(queue, 200, true);
  CountTicks(timer);
  machine.Advance(199ms);
  EXPECT_EQ(ticks, 0);
  machine.Advance(1ms);
  EXPECT_EQ(ticks, 1);
  machine.Advance(269ms);
  EXPECT_EQ(ticks, 1);
  machine.Advance(1ms);
  EXPECT_EQ(ticks, 2);
}

TEST_F(TimerTest, ADisabledTimerDoesNotTick) {
  Timer timer(queue, 100, false);
  CountTicks(timer);
  machine.Advance(1s);
  EXPECT_EQ(ticks, 0);
  EXPECT_FALSE(queue.NextDue().has_value());
}

TEST_F(TimerTest, ATimerThatDoesNotWakeTheLoopTicksWhenAnotherDoes) {
  Timer idle(queue, 1, true);
  CountTicks(idle);
  idle.WakesLoop = false;
  EXPECT_FALSE(queue.NextDue().has_value());
  const Timer other(queue, 100, true);
  machine.Advance(1s);
  EXPECT_EQ(ticks, 10);
}

TEST_F(TimerTest, ATimerThatDoesNotWakeTheLoopKeepsToItsInterval) {
  Timer idle(queue, 250, true);
  CountTicks(idle);
  idle.WakesLoop = false;
  const Timer other(queue, 100, true);
  machine.Advance(1s);
  EXPECT_EQ(ticks, 4) << "at 300, 500, 800 and 1000 milliseconds";
}

TEST_F(TimerTest, AChangeOfWhetherItWakesTheLoopIsReported) {
  Timer timer(queue, 100, true);
  int reported = 0;
  queue.Rescheduled.Listen([&] { ++reported; });
  timer.WakesLoop = false;
  timer.WakesLoop = true;
  EXPECT_EQ(reported, 2);
  EXPECT_TRUE(queue.NextDue().has_value());
}

TEST_F(TimerTest, EnablingStartsTheIntervalAnew) {
  Timer timer(queue, 100, true);
  CountTicks(timer);
  machine.Advance(60ms);
  timer.Enabled = false;
  timer.Enabled = true;
  machine.Advance(99ms);
  EXPECT_EQ(ticks, 0);
  machine.Advance(1ms);
  EXPECT_EQ(ticks, 1);
}

TEST_F(TimerTest, EnablingAnEnabledTimerChangesNothing) {
  Timer timer(queue, 100, true);
  CountTicks(timer);
  machine.Advance(60ms);
  timer.Enabled = true;
  machine.Advance(40ms);
  EXPECT_EQ(ticks, 1);
}

TEST_F(TimerTest, ATimerCanDisableItself) {
  Timer timer(queue, 100, true);
  timer.Tick.Listen([&] {
    ++ticks;
    timer.Enabled = false;
  });
  machine.Advance(1s);
  EXPECT_EQ(ticks, 1);
}

TEST_F(TimerTest, TheEarlierDueTimerTicksFirst) {
  std::vector<std::string> order;
  Timer late(queue, 200, true);
  Timer early(queue, 100, true);
  late.Tick.Listen([&] { order.push_back("late"); });
  early.Tick.Listen([&] { order.push_back("early"); });
  machine.clock.Move(250ms);
  queue.RunDue();
  EXPECT_THAT(order, ElementsAre("early", "late"));
}

TEST_F(TimerTest, TimersOfOneMomentTickInTheOrderInWhichTheyWereMade) {
  std::vector<std::string> order;
  Timer first(queue, 100, true);
  Timer second(queue, 100, true);
  second.Tick.Listen([&] { order.push_back("second"); });
  first.Tick.Listen([&] { order.push_back("first"); });
  machine.Advance(100ms);
  EXPECT_THAT(order, ElementsAre("first", "second"));
}

TEST_F(TimerTest, MissedTicksAreNotMadeUp) {
  Timer timer(queue, 100, true);
  CountTicks(timer);
  machine.clock.Move(950ms);
  queue.RunDue();
  EXPECT_EQ(ticks, 1);
  machine.Advance(99ms);
  EXPECT_EQ(ticks, 1);
  machine.Advance(1ms);
  EXPECT_EQ(ticks, 2);
}

TEST_F(TimerTest, ALittleDelayDoesNotShiftTheTicksThatFollow) {
  Timer timer(queue, 100, true);
  CountTicks(timer);
  machine.clock.Move(130ms);
  queue.RunDue();
  machine.Advance(70ms);
  EXPECT_EQ(ticks, 2);
}

TEST_F(TimerTest, ATimerNeverTicksInsideItsOwnHandler) {
  Timer timer(queue, 100, true);
  timer.Tick.Listen([&] {
    ++ticks;
    if (ticks == 1) machine.Advance(1s);
  });
  machine.Advance(100ms);
  EXPECT_EQ(ticks, 1);
}

TEST_F(TimerTest, OthersTickWhileAHandlerYields) {
  Timer slow(queue, 105, true);
  Timer other(queue, 10, true);
  bool in_handler = false;
  int ticks_inside = 0;
  other.Tick.Listen([&] {
    if (in_handler) ++ticks_inside;
  });
  slow.Tick.Listen([&] {
    in_handler = true;
    machine.Advance(50ms);
    in_handler = false;
  });
  machine.Advance(105ms);
  EXPECT_EQ(ticks_inside, 5);
}

TEST_F(TimerTest, ATimerWhoseHandlerTookLongIsDueOnceAfterIt) {
  Timer timer(queue, 100, true);
  timer.Tick.Listen([&] {
    ++ticks;
    if (ticks == 1) machine.clock.Move(1s);
  });
  machine.Advance(100ms);
  machine.loop.Yield();
  EXPECT_EQ(ticks, 2);
}

TEST_F(TimerTest, ReEnabledInItsHandlerItTicksAnIntervalAfterThat) {
  Timer timer(queue, 100, true);
  timer.Tick.Listen([&] {
    ++ticks;
    timer.Enabled = false;
    machine.clock.Move(30ms);
    timer.Enabled = true;
  });
  machine.Advance(100ms);
  machine.Advance(99ms);
  EXPECT_EQ(ticks, 1);
  machine.Advance(1ms);
  EXPECT_EQ(ticks, 2);
}

TEST_F(TimerTest, APassEndsThoughItsHandlersTakeLongerThanTheShortestInterval) {
  Timer timer(queue, 1, true);
  Timer other(queue, 1, true);
  CountTicks(timer);
  CountTicks(other);
  timer.Tick.Listen([&] { machine.clock.Move(10ms); });
  other.Tick.Listen([&] { machine.clock.Move(10ms); });
  machine.clock.Move(1ms);
  queue.RunDue();
  EXPECT_EQ(ticks, 2);
}

TEST_F(TimerTest, AHandlerMayDestroyAnotherTimerThatIsDue) {
  Timer first(queue, 100, true);
  auto second = std::make_unique<Timer>(queue, 100, true);
  CountTicks(*second);
  first.Tick.Listen([&] { second.reset(); });
  machine.Advance(100ms);
  EXPECT_EQ(ticks, 0);
}

TEST_F(TimerTest, AHandlerThatFailsTicksAgain) {
  Timer timer(queue, 100, true);
  timer.Tick.Listen([&] {
    ++ticks;
    throw ProgramError(kDiskFull);
  });
  machine.ExpectFault(61);
  machine.ExpectFault(61);
  machine.Advance(200ms);
  EXPECT_EQ(ticks, 2);
}

TEST_F(TimerTest, TheQueueKnowsWhenTheNextTimerIsDue) {
  int rescheduled = 0;
  queue.Rescheduled.Listen([&] { ++rescheduled; });
  Timer timer(queue, 100, true);
  EXPECT_EQ(queue.NextDue(), machine.clock.Uptime() + 100ms);
  EXPECT_EQ(rescheduled, 1);
  machine.Advance(100ms);
  EXPECT_EQ(queue.NextDue(), machine.clock.Uptime() + 100ms);
}

TEST_F(TimerTest, ATimerInItsHandlerIsNotDue) {
  Timer timer(queue, 100, true);
  bool was_due = true;
  timer.Tick.Listen([&] { was_due = queue.NextDue().has_value(); });
  machine.Advance(100ms);
  EXPECT_FALSE(was_due);
}

}  // namespace
}  // namespace tarnvale::testing
