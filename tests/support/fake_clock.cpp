#include "tests/support/fake_clock.h"

#include <cmath>

namespace tarnvale::testing {
namespace {

using std::chrono::nanoseconds;
using std::chrono::seconds;

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kEpochDay = 25569;  // 1970-01-01, counted from 1899-12-30

seconds ToSeconds(DateTime value) {
  return seconds(std::llround(value * static_cast<double>(kSecondsPerDay)));
}

}  // namespace

FakeClock::FakeClock() : wall_(ToSeconds(MakeDateTime({2008, 3, 14}, {11, 0, 0}))) {}

DateTime FakeClock::Now() {
  const auto whole = std::chrono::floor<seconds>(wall_).count();
  return static_cast<double>(whole) / static_cast<double>(kSecondsPerDay);
}

double FakeClock::SecondsSinceMidnight() {
  const auto day = std::chrono::floor<std::chrono::days>(wall_);
  return std::chrono::duration<double>(wall_ - day).count();
}

void FakeClock::SetTime(std::string_view time) {
  const auto day = std::chrono::floor<std::chrono::days>(wall_);
  wall_ = day + ToSeconds(TextToTime(time));
}

void FakeClock::SetDate(CivilDate date) {
  const auto time = wall_ - std::chrono::floor<std::chrono::days>(wall_);
  wall_ = ToSeconds(MakeDate(date)) + time;
}

void FakeClock::Move(nanoseconds span) {
  wall_ += span;
  uptime_ += span;
}

std::int64_t FakeClock::UnixSeconds() const {
  return std::chrono::floor<seconds>(wall_).count() - kEpochDay * kSecondsPerDay;
}

}  // namespace tarnvale::testing
