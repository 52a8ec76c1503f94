// The system's clocks.
#pragma once

#include "platform/clock.h"

namespace tarnvale {

/// Local time follows the time zone of the system, changes of it included.
class LinuxClock : public Clock {
 public:
  DateTime Now() override;
  double SecondsSinceMidnight() override;
  /// Stands still while the machine sleeps.
  std::chrono::nanoseconds Uptime() override;
};

}  // namespace tarnvale
