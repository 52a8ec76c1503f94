// Date-times: days since 1899-12-30 with the time of day as the fraction.
#pragma once

#include <string_view>

namespace tarnvale {

/// Days since 1899-12-30 00:00 local time; the fraction is the time of day. 0
/// stands for "not set". Two values that denote the same second are the same
/// number as long as both come from the functions below.
using DateTime = double;

struct CivilDate {
  int year = 1899;
  int month = 12;  ///< 1 to 12
  int day = 30;    ///< 1 to 31
  bool operator==(const CivilDate&) const = default;
};

struct TimeOfDay {
  int hour = 0;    ///< 0 to 23
  int minute = 0;  ///< 0 to 59
  int second = 0;  ///< 0 to 59
  bool operator==(const TimeOfDay&) const = default;
};

DateTime MakeDate(CivilDate date);
DateTime MakeTime(TimeOfDay time);
DateTime MakeDateTime(CivilDate date, TimeOfDay time);

/// Both split the value rounded to the nearest whole second.
CivilDate DateOf(DateTime value);
TimeOfDay TimeOf(DateTime value);

/// The whole days of the value rounded to seconds, as a date at midnight.
DateTime DatePart(DateTime value);
/// The time of day alone, rounded to whole seconds; a sum of times past
/// midnight wraps round.
DateTime TimePart(DateTime value);
/// Hour and minute alone, seconds 0.
DateTime MinutePart(DateTime value);

/// 1 on Sunday to 7 on Saturday.
int WeekdayOf(DateTime value);

/// Reads "h:mm", "hh:mm" or "hh:mm:ss", with blanks around it and an optional
/// "AM" or "PM". Raises 13 when the text is no time of day.
DateTime TextToTime(std::string_view text);

}  // namespace tarnvale
