#include <algorithm>
#include <chrono>

#include "tests/hosts/qt/qt_fixture.h"
#include "ui/timer.h"

namespace tarnvale {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

class QtLoop : public QtFixture {};

TEST_F(QtLoop, TicksATimerNoEarlierThanItsInterval) {
  Timer timer(loop.Timers(), 30, true);
  int ticks = 0;
  timer.Tick.Listen([&] { ++ticks; });
  const auto start = Clock::now();
  ASSERT_TRUE(WaitFor([&] { return ticks == 1; }));
  EXPECT_GE(Clock::now() - start, milliseconds(30));
}

TEST_F(QtLoop, TicksTimersOfWholeTenthsInOneMomentFromTheSecondTickOn) {
  Timer first(loop.Timers(), 100, true);
  std::vector<Clock::time_point> moments;
  first.Tick.Listen([&] { moments.push_back(Clock::now()); });
  const auto start = Clock::now();
  ASSERT_TRUE(WaitFor([&] { return Clock::now() - start > milliseconds(37); }));
  Timer second(loop.Timers(), 200, true);
  int ticks = 0;
  second.Tick.Listen([&] {
    if (++ticks < 2) return;
    second.Enabled = false;
    moments.push_back(Clock::now());
  });
  moments.clear();
  ASSERT_TRUE(WaitFor([&] { return !second.Enabled && moments.size() >= 2; }));
  const auto last = moments.size() - 1;
  EXPECT_LT(moments[last] - moments[last - 1], milliseconds(30));
}

TEST_F(QtLoop, NeverTicksATimerInsideItsOwnHandlerButOthersDo) {
  Timer outer(loop.Timers(), 10, true);
  Timer other(loop.Timers(), 10, true);
  int depth = 0;
  int deepest = 0;
  int others_inside = 0;
  bool done = false;
  other.Tick.Listen([&] { others_inside += depth; });
  outer.Tick.Listen([&] {
    deepest = std::max(deepest, ++depth);
    const auto start = Clock::now();
    while (Clock::now() - start < milliseconds(80)) loop.Yield();
    --depth;
    done = true;
  });
  ASSERT_TRUE(WaitFor([&] { return done; }));
  EXPECT_EQ(deepest, 1);
  EXPECT_GE(others_inside, 2);
}

TEST_F(QtLoop, TicksAfterATimerWasDisabledWhileDue) {
  Timer stopped(loop.Timers(), 10, true);
  Timer timer(loop.Timers(), 30, true);
  int ticks = 0;
  stopped.Tick.Listen([&] { stopped.Enabled = false; });
  timer.Tick.Listen([&] { ++ticks; });
  Timer end(loop.Timers(), 200, true);
  end.Tick.Listen([&] { loop.Quit(7); });
  EXPECT_EQ(loop.Run(), 7);
  EXPECT_GE(ticks, 2);
}

TEST_F(QtLoop, AYieldSoonAfterAnotherCostsNoPass) {
  int jobs = 0;
  loop.Yield();
  const auto start = Clock::now();
  int yields = 0;
  while (Clock::now() - start < milliseconds(100)) {
    loop.Post([&] { ++jobs; });
    loop.Yield();
    ++yields;
  }
  EXPECT_GT(yields, 500);
  ASSERT_TRUE(WaitFor([&] { return jobs == yields; }));
}

TEST_F(QtLoop, AWaitPassReturnsSoonWhenNothingHappens) {
  ASSERT_TRUE(WaitFor([] { return true; }));
  const auto start = Clock::now();
  loop.WaitPass();
  EXPECT_LT(Clock::now() - start, milliseconds(500));
}

TEST_F(QtLoop, TellsAFaultOfAPostedJobAndGoesOn) {
  QtEventLoop other;
  int number = 0;
  bool went_on = false;
  other.Fault.Listen([&](const ProgramError& error) { number = error.Number(); });
  other.Post([] { throw ProgramError(kPermissionDenied); });
  other.Post([&] { went_on = true; });
  ASSERT_TRUE(WaitFor([&] { return went_on; }));
  EXPECT_EQ(number, kPermissionDenied);
}

TEST_F(QtLoop, AQuitBeforeRunLetsRunReturnAtOnce) {
  loop.Quit(3);
  EXPECT_EQ(loop.Run(), 3);
}

}  // namespace
}  // namespace tarnvale
