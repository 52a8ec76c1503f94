#include "hosts/linux/linux_clock.h"

#include <time.h>

#include <algorithm>

namespace tarnvale {
namespace {

struct LocalTime {
  tm parts{};
  long nanoseconds = 0;
};

LocalTime Present() {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  // localtime_r alone doesn't look for a new time zone.
  ::tzset();
  LocalTime local;
  ::localtime_r(&now.tv_sec, &local.parts);
  local.nanoseconds = now.tv_nsec;
  // A leap second counts as the second before it.
  local.parts.tm_sec = std::min(local.parts.tm_sec, 59);
  return local;
}

}  // namespace

DateTime LinuxClock::Now() {
  const tm parts = Present().parts;
  return MakeDateTime({parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday},
                      {parts.tm_hour, parts.tm_min, parts.tm_sec});
}

double LinuxClock::SecondsSinceMidnight() {
  const LocalTime now = Present();
  return now.parts.tm_hour * 3600 + now.parts.tm_min * 60 + now.parts.tm_sec +
         static_cast<double>(now.nanoseconds) / 1e9;
}

std::chrono::nanoseconds LinuxClock::Uptime() {
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

}  // namespace tarnvale
