#include "platform/locale_formats.h"

namespace tarnvale {
namespace {

std::string TwoDigits(int number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

}  // namespace

std::string LocaleFormats::GeneralDate(DateTime value) {
  if (DatePart(value) == 0) return LongTime(value);
  if (TimePart(value) == 0) return ShortDate(value);
  return ShortDate(value) + " " + LongTime(value);
}

std::string LocaleFormats::ShortTime(DateTime value) {
  const TimeOfDay time = TimeOf(value);
  return TwoDigits(time.hour) + ":" + TwoDigits(time.minute);
}

}  // namespace tarnvale
