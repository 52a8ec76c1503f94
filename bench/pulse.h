// How long a program keeps its windows waiting.
#pragma once

#include <algorithm>
#include <chrono>

#include "ui/timer.h"

namespace tarnvale {

/// The longest time between two ticks of a timer, beyond its interval.
class Pulse {
 public:
  explicit Pulse(TimerQueue& timers) : timer_(timers, kIntervalMs, true) {
    timer_.Tick.Listen([this] {
      const Clock::time_point now = Clock::now();
      const std::chrono::duration<double, std::milli> since_last = now - last_;
      worst_ms_ = std::max(worst_ms_, since_last.count() - kIntervalMs);
      last_ = now;
    });
  }

  double WorstMs() const { return worst_ms_; }

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr int kIntervalMs = 10;

  Timer timer_;
  Clock::time_point last_ = Clock::now();
  double worst_ms_ = 0;
};

}  // namespace tarnvale
