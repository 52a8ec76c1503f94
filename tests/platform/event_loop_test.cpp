#include "platform/event_loop.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "tests/support/manual_loop.h"

namespace tarnvale::testing {
namespace {

class EventLoopTest : public ::testing::Test {
 protected:
  EventLoopTest() {
    loop.Fault.Listen([this](const ProgramError& error) { faults.push_back(error.Number()); });
  }

  FakeClock clock;
  ManualLoop loop{clock};
  std::vector<int> faults;
};

TEST_F(EventLoopTest, AFailureEndsItsHandlerAndIsTold) {
  loop.Deliver([] { throw ProgramError(kPathNotFound); });
  EXPECT_EQ(faults, std::vector<int>{76});
}

TEST_F(EventLoopTest, ANestedFailureDoesNotUnwindTheHandlerThatItInterrupted) {
  bool went_on = false;
  loop.Post([] { throw ProgramError(kDiskFull); });
  loop.Deliver([&] {
    loop.Yield();
    went_on = true;
  });
  EXPECT_TRUE(went_on);
  EXPECT_EQ(faults, std::vector<int>{61});
}

TEST_F(EventLoopTest, ABugGoesThrough) {
  EXPECT_THROW(loop.Deliver([] { throw std::logic_error("bug"); }), std::logic_error);
}

}  // namespace
}  // namespace tarnvale::testing
