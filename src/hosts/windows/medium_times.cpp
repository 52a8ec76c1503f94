#include "hosts/windows/medium_times.h"

#include <windows.h>

#include "hosts/windows/file_state.h"

namespace tarnvale {
namespace {

constexpr std::uint64_t kUnitsPerMillisecond = 10'000;

std::uint64_t Units(const FILETIME& time) {
  return std::uint64_t{time.dwHighDateTime} << 32U | time.dwLowDateTime;
}

// As they are where the system doesn't know.
template <class Convert>
FILETIME ByDate(const FILETIME& time, Convert&& convert) {
  SYSTEMTIME from{};
  SYSTEMTIME to{};
  FILETIME result{};
  if (::FileTimeToSystemTime(&time, &from) == 0 || convert(&from, &to) == 0 ||
      ::SystemTimeToFileTime(&to, &result) == 0) {
    return time;
  }
  return FileTimeOf(Units(result) + Units(time) % kUnitsPerMillisecond);
}

}  // namespace

std::uint64_t MediumTimes::FromMedium(std::uint64_t reported) const {
  const FILETIME by_today = FileTimeOf(reported);
  FILETIME local{};
  if (!are_local_ || ::FileTimeToLocalFileTime(&by_today, &local) == 0) return reported;
  return Units(ByDate(local, [](const SYSTEMTIME* from, SYSTEMTIME* to) {
    return ::TzSpecificLocalTimeToSystemTime(nullptr, from, to);
  }));
}

std::uint64_t MediumTimes::ToMedium(std::uint64_t time) const {
  if (!are_local_) return time;
  const FILETIME local = ByDate(FileTimeOf(time), [](const SYSTEMTIME* from, SYSTEMTIME* to) {
    return ::SystemTimeToTzSpecificLocalTime(nullptr, from, to);
  });
  FILETIME by_today{};
  return ::LocalFileTimeToFileTime(&local, &by_today) != 0 ? Units(by_today) : time;
}

}  // namespace tarnvale
