#include "tests/support/fake_formats.h"

#include <array>

#include "platform/standard_number.h"

namespace tarnvale::testing {
namespace {

constexpr std::array kDays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                              "Thursday", "Friday", "Saturday"};
constexpr std::array kMonths = {"January",   "February", "March",    "April",
                                "May",       "June",     "July",     "August",
                                "September", "October",  "November", "December"};

std::string TwoDigits(int number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

}  // namespace

std::string FakeFormats::LongTime(DateTime value) {
  const TimeOfDay time = TimeOf(value);
  const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
  return std::to_string(hour) + ":" + TwoDigits(time.minute) + ":" + TwoDigits(time.second) +
         (time.hour < 12 ? " AM" : " PM");
}

std::string FakeFormats::ShortDate(DateTime value) {
  const CivilDate date = DateOf(value);
  return std::to_string(date.month) + "/" + std::to_string(date.day) + "/" +
         std::to_string(date.year);
}

std::string FakeFormats::LongDate(DateTime value) {
  const CivilDate date = DateOf(value);
  return std::string(kDays.at(static_cast<std::size_t>(WeekdayOf(value) - 1))) + ", " +
         kMonths.at(static_cast<std::size_t>(date.month - 1)) + " " + std::to_string(date.day) +
         ", " + std::to_string(date.year);
}

std::string FakeFormats::StandardNumber(double value) {
  return StandardNumberText(value, {});
}

}  // namespace tarnvale::testing
