// The system's clocks.
#pragma once

#include "platform/clock.h"

namespace tarnvale {

class WindowsClock : public Clock {
 public:
  DateTime Now() override;
  double SecondsSinceMidnight() override;
  /// Of the performance counter: the compilers' own steady clock is the wall clock here.
  std::chrono::nanoseconds Uptime() override;
};

}  // namespace tarnvale
