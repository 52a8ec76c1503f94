#include "base/date_time.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

#include "base/failure.h"
#include "base/numbers.h"
#include "base/text.h"

namespace tarnvale {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::chrono::sys_days kEpoch{std::chrono::year{1899} / 12 / 30};

std::int64_t SecondsOf(DateTime value) {
  return RoundHalfEven(value * static_cast<double>(kSecondsPerDay));
}

std::int64_t FloorDays(std::int64_t seconds) {
  const std::int64_t days = seconds / kSecondsPerDay;
  return seconds % kSecondsPerDay < 0 ? days - 1 : days;
}

DateTime FromSeconds(std::int64_t seconds) {
  return static_cast<double>(seconds) / static_cast<double>(kSecondsPerDay);
}

// One to two digits from the front of `text`.
std::optional<int> TakeNumber(std::string_view& text) {
  int value = 0;
  int digits = 0;
  while (!text.empty() && text.front() >= '0' && text.front() <= '9' && digits < 2) {
    value = value * 10 + (text.front() - '0');
    text.remove_prefix(1);
    ++digits;
  }
  if (digits == 0) return std::nullopt;
  return value;
}

bool TakeColon(std::string_view& text) {
  if (text.empty() || text.front() != ':') return false;
  text.remove_prefix(1);
  return true;
}

// A 12-hour clock's hour as one of 24 hours.
std::optional<int> HourWithSuffix(int hour, std::string_view suffix) {
  if (suffix.empty()) return hour;
  const bool pm = EqualIgnoringCase(suffix, "PM");
  if (!pm && !EqualIgnoringCase(suffix, "AM")) return std::nullopt;
  if (hour < 1 || hour > 12) return std::nullopt;
  return hour % 12 + (pm ? 12 : 0);
}

std::optional<TimeOfDay> ParseTime(std::string_view text) {
  text = Trimmed(text);
  const auto hour = TakeNumber(text);
  if (!hour || !TakeColon(text)) return std::nullopt;
  const auto minute = TakeNumber(text);
  if (!minute) return std::nullopt;
  std::optional<int> second = 0;
  if (TakeColon(text)) second = TakeNumber(text);
  if (!second) return std::nullopt;
  const auto full_hour = HourWithSuffix(*hour, Trimmed(text));
  if (!full_hour || *full_hour > 23 || *minute > 59 || *second > 59) return std::nullopt;
  return TimeOfDay{*full_hour, *minute, *second};
}

}  // namespace

DateTime MakeDateTime(CivilDate date, TimeOfDay time) {
  const std::chrono::sys_days day{std::chrono::year{date.year} / static_cast<unsigned>(date.month) /
                                  static_cast<unsigned>(date.day)};
  const std::int64_t days = (day - kEpoch).count();
  return FromSeconds(days * kSecondsPerDay + time.hour * 3600 + time.minute * 60 + time.second);
}

DateTime MakeDate(CivilDate date) {
  return MakeDateTime(date, {});
}
DateTime MakeTime(TimeOfDay time) {
  return MakeDateTime({}, time);
}

CivilDate DateOf(DateTime value) {
  const std::chrono::year_month_day date{kEpoch + std::chrono::days{FloorDays(SecondsOf(value))}};
  return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day()))};
}

TimeOfDay TimeOf(DateTime value) {
  const std::int64_t seconds = SecondsOf(value);
  const auto rest = static_cast<int>(seconds - FloorDays(seconds) * kSecondsPerDay);
  return {rest / 3600, rest / 60 % 60, rest % 60};
}

DateTime DatePart(DateTime value) {
  return static_cast<double>(FloorDays(SecondsOf(value)));
}
DateTime TimePart(DateTime value) {
  return MakeTime(TimeOf(value));
}

DateTime MinutePart(DateTime value) {
  const TimeOfDay time = TimeOf(value);
  return MakeTime({time.hour, time.minute, 0});
}

int WeekdayOf(DateTime value) {
  // 1899-12-30 was a Saturday.
  const std::int64_t days = FloorDays(SecondsOf(value));
  return static_cast<int>(((days - 1) % 7 + 7) % 7) + 1;
}

DateTime TextToTime(std::string_view text) {
  const auto time = ParseTime(text);
  if (!time) throw ProgramError(kTypeMismatch);
  return MakeTime(*time);
}

}  // namespace tarnvale
