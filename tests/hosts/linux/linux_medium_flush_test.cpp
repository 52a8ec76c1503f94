// Flushing a medium that takes its time.
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "tests/hosts/linux/linux_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

/// Every flush of this program goes by here.
struct SlowMedium {
  std::mutex mutex;
  std::condition_variable changed;
  bool held = false;
  int failure = 0;  ///< what errno is then
  int flushing = 0;
} medium;

class LinuxMediumFlushTest : public LinuxStage {
 protected:
  ~LinuxMediumFlushTest() override {
    LetGo(0);
    std::unique_lock lock(medium.mutex);
    medium.changed.wait(lock, [] { return medium.flushing == 0; });
    medium.failure = 0;
  }

  static void Hold() {
    const std::lock_guard lock(medium.mutex);
    medium.held = true;
  }
  static void LetGo(int failure) {
    const std::lock_guard lock(medium.mutex);
    medium.held = false;
    medium.failure = failure;
    medium.changed.notify_all();
  }
  static void WaitUntilItFlushes() {
    std::unique_lock lock(medium.mutex);
    medium.changed.wait(lock, [] { return medium.flushing > 0; });
  }
  static void WaitFor(MediumFlush& flush) {
    while (!flush.IsDone()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }

  LinuxHost host{surroundings};
};

TEST_F(LinuxMediumFlushTest, ASlowMediumDoesNotStopTheCaller) {
  Hold();
  const auto flush = host.files.BeginFlush("C:\\Data");
  WaitUntilItFlushes();
  EXPECT_FALSE(flush->IsDone());
  LetGo(0);
  WaitFor(*flush);
}

TEST_F(LinuxMediumFlushTest, AMediumThatFailsRaises57AtTheEnd) {
  Hold();
  const auto flush = host.files.BeginFlush("C:\\Data");
  EXPECT_FALSE(flush->IsDone());
  LetGo(EIO);
  EXPECT_EQ(RaisedBy([&] { WaitFor(*flush); }), 57);
}

TEST_F(LinuxMediumFlushTest, TheHostMayEndBeforeItsMediumHasEverything) {
  Hold();
  {
    LinuxHost other(surroundings);
    const auto flush = other.files.BeginFlush("C:\\Data");
    WaitUntilItFlushes();
  }
  LetGo(0);
}

}  // namespace
}  // namespace tarnvale::testing

extern "C" int syncfs(int fd) noexcept {
  using tarnvale::testing::medium;
  std::unique_lock lock(medium.mutex);
  ++medium.flushing;
  medium.changed.notify_all();
  medium.changed.wait(lock, [] { return !medium.held; });
  const int failure = medium.failure;
  lock.unlock();
  const int result = failure == 0 ? static_cast<int>(::syscall(SYS_syncfs, fd)) : -1;
  lock.lock();
  --medium.flushing;
  medium.changed.notify_all();
  if (failure != 0) errno = failure;
  return result;
}
