// An event loop whose time only tests move.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>

#include "tests/support/fake_clock.h"
#include "ui/event_loop.h"

namespace tarnvale::testing {

class ManualLoop : public EventLoop {
 public:
  explicit ManualLoop(FakeClock& clock);

  /// Runs the posted jobs and the timers due at the present virtual time, then
  /// what OnYield requested.
  void Yield() override;
  /// A yield; when it found no job, time moves on by 10 ms, so that waiting
  /// loops end.
  void WaitPass() override;

  /// Moves the time from due moment to due moment until Quit. Fails the test
  /// when nothing is left that could ever call it.
  int Run() override;
  void Quit(int code) override { quit_code_ = code; }
  bool IsEnding() const override { return quit_code_.has_value(); }
  int Nesting() const override { return passes_; }
  void Post(std::function<void()> job) override;
  TimerQueue& Timers() override { return timers_; }

  /// Moves the time: runs due timers in the order of their due moments, the
  /// clock standing at each due moment while it ticks, and posted jobs as they
  /// come. Serves nothing any more once Quit was called.
  void Advance(std::chrono::nanoseconds span);

  /// Runs `action` at the n-th yield from now, 1 being the next one.
  void OnYield(int n, std::function<void()> action);
  int YieldCount() const { return yield_count_; }

  /// What Quit was last called with.
  std::optional<int> QuitCode() const { return quit_code_; }

 private:
  std::size_t JobCount();
  bool RunJobs();
  void Pass();
  void MoveTo(std::chrono::nanoseconds uptime);

  /// Not every compiler of these tests has std::mutex, and it is held for a moment only.
  class SpinLock {
   public:
    void lock() {
      while (flag_.test_and_set(std::memory_order_acquire)) continue;
    }
    void unlock() { flag_.clear(std::memory_order_release); }

   private:
    std::atomic_flag flag_;
  };

  FakeClock& clock_;
  TimerQueue timers_;
  SpinLock jobs_mutex_;
  std::deque<std::function<void()>> jobs_;
  std::multimap<int, std::function<void()>> yield_actions_;
  int yield_count_ = 0;
  int passes_ = 0;
  std::optional<int> quit_code_;
};

}  // namespace tarnvale::testing
