#include "ui/frame_clock.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

struct Client : FrameClient {
  void OnFrame() override {
    ++frames;
    if (on_frame) on_frame();
  }
  int frames = 0;
  std::function<void()> on_frame;
};

class FrameClockTest : public ::testing::Test {
 protected:
  FakeMachine machine;
  FrameClock clock{machine.loop.Timers()};
  Client client;
};

TEST_F(FrameClockTest, ManyRequestsAreOneFrame) {
  for (int i = 0; i < 5; ++i) clock.Request(client);
  EXPECT_EQ(client.frames, 0);
  machine.Advance(100ms);
  EXPECT_EQ(client.frames, 1);
}

TEST_F(FrameClockTest, TheFirstRequestAfterAPauseIsServedAtOnce) {
  machine.Advance(1s);
  clock.Request(client);
  machine.Advance(1ms);
  EXPECT_EQ(client.frames, 1);
  clock.Request(client);
  machine.Advance(1ms);
  EXPECT_EQ(client.frames, 1);
}

TEST_F(FrameClockTest, AClientThatAlwaysRequestsAnotherFrameGetsSixtyASecondAtMost) {
  client.on_frame = [&] { clock.Request(client); };
  clock.Request(client);
  machine.Advance(1s);
  EXPECT_LE(client.frames, 60);
  EXPECT_GE(client.frames, 50);
}

TEST_F(FrameClockTest, NoLoopWakesWhileNothingIsRequested) {
  EXPECT_FALSE(machine.loop.Timers().NextDue().has_value());
  clock.Request(client);
  EXPECT_TRUE(machine.loop.Timers().NextDue().has_value());
  machine.Advance(100ms);
  EXPECT_FALSE(machine.loop.Timers().NextDue().has_value());
}

TEST_F(FrameClockTest, AClientThatGoesAwayInAFrameIsNotCalled) {
  Client other;
  client.on_frame = [&] { clock.Forget(other); };
  clock.Request(client);
  clock.Request(other);
  machine.Advance(100ms);
  EXPECT_EQ(client.frames, 1);
  EXPECT_EQ(other.frames, 0);
}

TEST_F(FrameClockTest, AClientInAHurryHasItsFrameOnce) {
  clock.Hurry(client);
  EXPECT_EQ(client.frames, 0);
  clock.Request(client);
  clock.Hurry(client);
  EXPECT_EQ(client.frames, 1);
  machine.Advance(100ms);
  EXPECT_EQ(client.frames, 1);
}

}  // namespace
}  // namespace tarnvale::testing
