#include "platform/event_loop.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <vector>

#include "base/out_of_memory.h"
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

TEST_F(EventLoopTest, MemoryThatALibraryCouldNotGetEndsItsHandlerAsError7) {
  loop.Deliver([] { throw std::bad_alloc(); });
  loop.Deliver([] { throw OutOfMemory(); });
  EXPECT_EQ(faults, (std::vector<int>{7, 7}));
}

TEST_F(EventLoopTest, AnErrorThatCannotBeToldOfEndsNothing) {
  loop.Fault.Listen([](const ProgramError&) { throw OutOfMemory(); });
  EXPECT_NO_THROW(loop.Deliver([] { throw ProgramError(kDiskFull); }));
}

}  // namespace
}  // namespace tarnvale::testing
