#include "hosts/linux/linux_locale_formats.h"

#include <langinfo.h>
#include <time.h>

#include <array>
#include <string_view>

#include "base/failure.h"

namespace tarnvale {
namespace {

bool IsPlain(std::string_view locale_name) {
  return locale_name == "POSIX" || locale_name == "C" || locale_name.substr(0, 2) == "C.";
}

tm PartsOf(DateTime value) {
  const CivilDate date = DateOf(value);
  const TimeOfDay time = TimeOf(value);
  tm parts{};
  parts.tm_year = date.year - 1900;
  parts.tm_mon = date.month - 1;
  parts.tm_mday = date.day;
  parts.tm_wday = WeekdayOf(value) - 1;
  parts.tm_yday = static_cast<int>(DatePart(value) - MakeDate({date.year, 1, 1}));
  parts.tm_hour = time.hour;
  parts.tm_min = time.minute;
  parts.tm_sec = time.second;
  parts.tm_isdst = -1;
  return parts;
}

}  // namespace

DateOrder OrderOf(const std::string& pattern) {
  for (std::size_t at = pattern.find('%'); at != std::string::npos;
       at = pattern.find('%', at + 1)) {
    // Flags and modifiers stand between the sign and the letter.
    at = pattern.find_first_not_of("-_0^#EO", at + 1);
    if (at == std::string::npos) break;
    switch (pattern[at]) {
      case 'd':
      case 'e':
        return DateOrder::kDayMonthYear;
      case 'm':
      case 'b':
      case 'B':
      case 'h':
      case 'D':
        return DateOrder::kMonthDayYear;
      case 'Y':
      case 'y':
      case 'F':
      case 'C':
      case 'G':
        return DateOrder::kYearMonthDay;
      default:
        break;
    }
  }
  return DateOrder::kDayMonthYear;
}

LinuxLocaleFormats::LinuxLocaleFormats(const std::string& name) {
  constexpr int kCategories = LC_TIME_MASK | LC_NUMERIC_MASK | LC_CTYPE_MASK;
  locale_ = ::newlocale(kCategories, name.c_str(), nullptr);
  if (locale_ == nullptr) locale_ = ::newlocale(kCategories, "C", nullptr);
  ReadTimes();
  ReadNumbers();
}

LinuxLocaleFormats::~LinuxLocaleFormats() {
  ::freelocale(locale_);
}

void LinuxLocaleFormats::ReadTimes() {
  if (IsPlain(::nl_langinfo_l(_NL_LOCALE_NAME(LC_TIME), locale_))) return;
  date_pattern_ = ::nl_langinfo_l(D_FMT, locale_);
  time_pattern_ = ::nl_langinfo_l(T_FMT, locale_);
}

void LinuxLocaleFormats::ReadNumbers() {
  if (IsPlain(::nl_langinfo_l(_NL_LOCALE_NAME(LC_NUMERIC), locale_))) return;
  marks_.decimal = ::nl_langinfo_l(RADIXCHAR, locale_);
  marks_.thousands = ::nl_langinfo_l(THOUSEP, locale_);
  marks_.grouping = ::nl_langinfo_l(GROUPING, locale_);
}

std::string LinuxLocaleFormats::Format(const std::string& pattern, DateTime value) const {
  const tm parts = PartsOf(value);
  std::array<char, 512> text{};
  std::size_t length = ::strftime_l(text.data(), text.size(), pattern.c_str(), &parts, locale_);
  // Some locales end their patterns in a blank.
  while (length > 0 && text.at(length - 1) == ' ') --length;
  return {text.data(), length};
}

std::string LinuxLocaleFormats::LongTime(DateTime value) {
  return Format(time_pattern_, value);
}

std::string LinuxLocaleFormats::ShortDate(DateTime value) {
  return Format(date_pattern_, value);
}

std::string LinuxLocaleFormats::LongDate(DateTime value) {
  switch (OrderOf(date_pattern_)) {
    case DateOrder::kDayMonthYear:
      return Format("%A, %-d %B %Y", value);
    case DateOrder::kMonthDayYear:
      return Format("%A, %B %-d, %Y", value);
    case DateOrder::kYearMonthDay:
      return Format("%A, %Y %B %-d", value);
  }
  return Format(date_pattern_, value);
}

std::string LinuxLocaleFormats::StandardNumber(double value) {
  return StandardNumberText(value, marks_);
}

}  // namespace tarnvale
