// A clock that stands still until a test moves it.
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

#include "platform/clock.h"

namespace tarnvale::testing {

/// Begins at 2008-03-14 11:00:00, a Friday. Local time is UTC.
class FakeClock : public Clock {
 public:
  FakeClock();

  DateTime Now() override;
  double SecondsSinceMidnight() override;
  std::chrono::nanoseconds Uptime() override { return uptime_; }

  /// Sets the wall clock alone, as a user does: no timer hears of it.
  /// "hh:mm" or "hh:mm:ss".
  void SetTime(std::string_view time);
  void SetDate(CivilDate date);

  /// Moves both clocks forward.
  void Move(std::chrono::nanoseconds span);

  /// Wall clock in whole seconds since 1970-01-01, rounded down.
  std::int64_t UnixSeconds() const;

 private:
  std::chrono::nanoseconds wall_{};  // since 1899-12-30
  std::chrono::nanoseconds uptime_{std::chrono::hours(1)};
};

}  // namespace tarnvale::testing
