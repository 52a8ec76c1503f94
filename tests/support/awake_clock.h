// The time in which the machine ran: for limits of what a test watches in real time.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include "tests/support/threads.h"

namespace tarnvale::testing {

/// Goes on while this process gets a processor, and hardly moves while the whole machine
/// stands still, as a virtual one does for a second now and then: that holds nobody up who
/// wouldn't have been. Kept by a thread of its own that does nothing else.
class AwakeClock {
 public:
  AwakeClock() : thread_([this] { Count(); }) {}
  AwakeClock(const AwakeClock&) = delete;
  AwakeClock& operator=(const AwakeClock&) = delete;
  ~AwakeClock() {
    ends_ = true;
    thread_.join();
  }

  /// Since the clock was made; some hundredths late.
  double Seconds() const { return std::chrono::duration<double>(passed_.load()).count(); }

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::milliseconds kTick{10};
  /// A thread that only sleeps is this late at most where others compete with it.
  static constexpr std::chrono::milliseconds kMost{50};

  void Count() {
    Clock::time_point before = Clock::now();
    while (!ends_) {
      std::this_thread::sleep_for(kTick);
      const Clock::time_point now = Clock::now();
      passed_ = passed_.load() + std::min<Clock::duration>(now - before, kMost);
      before = now;
    }
  }

  std::atomic<Clock::duration> passed_{};
  std::atomic<bool> ends_ = false;
  Thread thread_;
};

}  // namespace tarnvale::testing
