// The user's formats of dates, times and numbers.
#pragma once

#include <string>

#include "base/date_time.h"

namespace tarnvale {

class LocaleFormats {
 public:
  virtual ~LocaleFormats() = default;

  /// Date and time, shortest form: the date alone when the time of day is 0,
  /// the time alone when the date is 1899-12-30, so that 0 is a time.
  std::string GeneralDate(DateTime value);
  /// Hour and minute on a 24-hour clock, two digits each: "17:45".
  static std::string ShortTime(DateTime value);
  /// Time of day with seconds, as the user's locale writes it.
  virtual std::string LongTime(DateTime value) = 0;
  /// Date in the user's short form.
  virtual std::string ShortDate(DateTime value) = 0;
  /// Date with the names of day and month.
  virtual std::string LongDate(DateTime value) = 0;
  /// Thousands separators and two decimals, halves away from zero: "1,234.50".
  virtual std::string StandardNumber(double value) = 0;
};

}  // namespace tarnvale
