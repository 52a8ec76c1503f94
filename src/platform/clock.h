// The wall clock and the clock that timers go by.
#pragma once

#include <chrono>

#include "base/date_time.h"

namespace tarnvale {

class Clock {
 public:
  virtual ~Clock() = default;

  /// The present local date and time, whole seconds (fraction cut off).
  virtual DateTime Now() = 0;

  /// Seconds since local midnight, with a fraction.
  virtual double SecondsSinceMidnight() = 0;

  /// Time since some fixed moment; never jumps, whatever the wall clock does.
  virtual std::chrono::nanoseconds Uptime() = 0;
};

}  // namespace tarnvale
