#include "hosts/windows/windows_locale_formats.h"

#include <array>

#include "hosts/windows/wide.h"
#include "platform/standard_number.h"

namespace tarnvale {
namespace {

SYSTEMTIME PartsOf(DateTime value) {
  const CivilDate date = DateOf(value);
  const TimeOfDay time = TimeOf(value);
  SYSTEMTIME parts{};
  parts.wYear = static_cast<WORD>(date.year);
  parts.wMonth = static_cast<WORD>(date.month);
  parts.wDay = static_cast<WORD>(date.day);
  parts.wHour = static_cast<WORD>(time.hour);
  parts.wMinute = static_cast<WORD>(time.minute);
  parts.wSecond = static_cast<WORD>(time.second);
  return parts;
}

// "3;2;0" as the sizes of groups: a last 0 says that the one before it repeats, without
// it the rest of the digits stay together.
std::string GroupingOf(const std::string& setting) {
  std::string grouping;
  for (const char c : setting) {
    if (c >= '1' && c <= '9') grouping += static_cast<char>(c - '0');
  }
  const bool repeats = setting.size() > 1 && setting.back() == '0';
  if (!repeats) grouping += '\0';
  return grouping;
}

}  // namespace

std::string WindowsLocaleFormats::Date(DateTime value, DWORD flags) const {
  const SYSTEMTIME parts = PartsOf(value);
  std::array<wchar_t, 256> text{};
  const int length = ::GetDateFormatW(locale_, flags, &parts, nullptr, text.data(), text.size());
  return length > 0 ? Narrow({text.data(), static_cast<std::size_t>(length - 1)}) : std::string();
}

std::string WindowsLocaleFormats::Setting(LCTYPE type) const {
  std::array<wchar_t, 128> text{};
  const int length = ::GetLocaleInfoW(locale_, type, text.data(), text.size());
  return length > 0 ? Narrow({text.data(), static_cast<std::size_t>(length - 1)}) : std::string();
}

std::string WindowsLocaleFormats::LongTime(DateTime value) {
  const SYSTEMTIME parts = PartsOf(value);
  std::array<wchar_t, 128> text{};
  const int length = ::GetTimeFormatW(locale_, 0, &parts, nullptr, text.data(), text.size());
  return length > 0 ? Narrow({text.data(), static_cast<std::size_t>(length - 1)}) : std::string();
}

std::string WindowsLocaleFormats::ShortDate(DateTime value) {
  return Date(value, DATE_SHORTDATE);
}

std::string WindowsLocaleFormats::LongDate(DateTime value) {
  return Date(value, DATE_LONGDATE);
}

std::string WindowsLocaleFormats::StandardNumber(double value) {
  NumberMarks marks;
  marks.decimal = Setting(LOCALE_SDECIMAL);
  marks.thousands = Setting(LOCALE_STHOUSAND);
  marks.grouping = GroupingOf(Setting(LOCALE_SGROUPING));
  return StandardNumberText(value, marks);
}

}  // namespace tarnvale
