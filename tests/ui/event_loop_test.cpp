#include "ui/event_loop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
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

TEST_F(EventLoopTest, AFailureEndsItsHandlerAndIsReported) {
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

TEST_F(EventLoopTest, AnErrorThatCannotBeReportedEndsNothing) {
  loop.Fault.Listen([](const ProgramError&) { throw OutOfMemory(); });
  EXPECT_NO_THROW(loop.Deliver([] { throw ProgramError(kDiskFull); }));
}

class AfterHandlersTest : public EventLoopTest {
 protected:
  void WaitSomePasses() {
    for (int i = 0; i < 10; ++i) loop.WaitPass();
  }
  std::function<void()> Deletion() {
    return [this] { is_deleted = true; };
  }

  bool is_deleted = false;
};

TEST_F(AfterHandlersTest, WaitsForAHandlerThatMayKnowIt) {
  bool was_deleted_before = true;
  loop.Post([&] {
    const std::uint64_t first = loop.RunningHandler();
    loop.Post([&, first] { loop.AfterHandlersSince(first, Deletion()); });
    WaitSomePasses();
    was_deleted_before = is_deleted;
  });
  loop.Advance(std::chrono::seconds(1));
  EXPECT_FALSE(was_deleted_before);
  EXPECT_TRUE(is_deleted);
}

TEST_F(AfterHandlersTest, DoesNotWaitForAnOlderHandler) {
  bool was_deleted_before = false;
  loop.Post([&] {
    loop.Post([&] { loop.AfterHandlersSince(loop.RunningHandler(), Deletion()); });
    WaitSomePasses();
    was_deleted_before = is_deleted;
  });
  loop.Advance(std::chrono::seconds(1));
  EXPECT_TRUE(was_deleted_before);
}

// What the host does around a handler may go on to another one, which waits.
TEST_F(AfterHandlersTest, WaitsForWhatIsAroundAHandlerThatHasEnded) {
  bool was_deleted_before = true;
  loop.Post([&] {
    loop.Deliver([&] { loop.AfterHandlersSince(loop.RunningHandler(), Deletion()); });
    loop.Deliver([&] { WaitSomePasses(); });
    was_deleted_before = is_deleted;
  });
  loop.Advance(std::chrono::seconds(1));
  EXPECT_FALSE(was_deleted_before);
  EXPECT_TRUE(is_deleted);
}

TEST_F(AfterHandlersTest, AnIdleLoopIsNotKeptBusyByWhatWaits) {
  int passes_with_jobs = 0;
  loop.Post([&] {
    loop.AfterHandlersSince(loop.RunningHandler(), Deletion());
    for (int i = 0; i < 100; ++i) {
      const auto before = clock.Uptime();
      loop.WaitPass();
      // A wait pass that finds a job doesn't move the time.
      if (clock.Uptime() == before) ++passes_with_jobs;
    }
  });
  loop.Advance(std::chrono::seconds(2));
  EXPECT_LE(passes_with_jobs, 1);
}

}  // namespace
}  // namespace tarnvale::testing
