// The formats of the user's locale.
#pragma once

#include <locale.h>

#include <string>

#include "platform/locale_formats.h"
#include "platform/standard_number.h"

namespace tarnvale {

/// The order of day, month and year in a long date.
enum class DateOrder { kDayMonthYear, kMonthDayYear, kYearMonthDay };

/// The order in which a short date's pattern has its parts; `pattern` as for
/// strftime.
DateOrder OrderOf(const std::string& pattern);

/// The C library's locale of the environment (LC_ALL, LC_TIME, LC_NUMERIC,
/// LANG), as it was at the start. Where that is none, or the plain "C" one:
/// dates as 2008-03-14, times on a 24-hour clock, numbers as 1,234.50.
class LinuxLocaleFormats : public LocaleFormats {
 public:
  /// `name` is a locale's name; empty for the environment's. One that isn't
  /// installed counts as "C".
  explicit LinuxLocaleFormats(const std::string& name = {});
  ~LinuxLocaleFormats() override;
  LinuxLocaleFormats(const LinuxLocaleFormats&) = delete;
  LinuxLocaleFormats& operator=(const LinuxLocaleFormats&) = delete;

  std::string LongTime(DateTime value) override;
  std::string ShortDate(DateTime value) override;
  std::string LongDate(DateTime value) override;
  std::string StandardNumber(double value) override;

 private:
  std::string Format(const std::string& pattern, DateTime value) const;
  void ReadTimes();
  void ReadNumbers();

  locale_t locale_;
  std::string date_pattern_ = "%Y-%m-%d";
  std::string time_pattern_ = "%H:%M:%S";
  NumberMarks marks_;
};

}  // namespace tarnvale
