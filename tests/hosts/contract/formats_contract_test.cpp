// Formats: what every host must do whatever the locale.
#include <gmock/gmock.h>

#include "tests/hosts/contract/host_under_test.h"

namespace tarnvale::testing {
namespace {

using ::testing::HasSubstr;

class FormatsContract : public HostTest {
 protected:
  LocaleFormats& formats = host.Formats();
  const DateTime noon = MakeDateTime({2008, 3, 14}, {11, 59, 1});
};
INSTANTIATE_TEST_SUITE_P(Hosts, FormatsContract, ::testing::ValuesIn(AllHosts()), NameOfHost);

TEST_P(FormatsContract, ShortTimeHasTwoDigitsOnA24HourClock) {
  EXPECT_EQ(formats.ShortTime(MakeTime({17, 45, 59})), "17:45");
  EXPECT_EQ(formats.ShortTime(MakeTime({9, 5, 0})), "09:05");
  EXPECT_EQ(formats.ShortTime(0), "00:00");
  EXPECT_EQ(formats.ShortTime(noon), "11:59");
}

TEST_P(FormatsContract, GeneralDateHasDateAndTime) {
  EXPECT_EQ(formats.GeneralDate(noon), formats.ShortDate(noon) + " " + formats.LongTime(noon));
}

TEST_P(FormatsContract, GeneralDateAtMidnightIsTheDateAlone) {
  const DateTime day = MakeDate({2008, 3, 14});
  EXPECT_EQ(formats.GeneralDate(day), formats.ShortDate(day));
}

TEST_P(FormatsContract, GeneralDateOfATimeIsTheTimeAlone) {
  const DateTime time = MakeTime({17, 45, 9});
  EXPECT_EQ(formats.GeneralDate(time), formats.LongTime(time));
  EXPECT_EQ(formats.GeneralDate(0), formats.LongTime(0));
}

TEST_P(FormatsContract, LongTimeHasSeconds) {
  EXPECT_THAT(formats.LongTime(noon), HasSubstr("11:59:01"));
}

TEST_P(FormatsContract, LongDateNamesDayAndMonth) {
  const std::string text = formats.LongDate(noon);
  EXPECT_THAT(text, HasSubstr("Friday"));
  EXPECT_THAT(text, HasSubstr("March"));
  EXPECT_THAT(text, HasSubstr("14"));
  EXPECT_THAT(text, HasSubstr("2008"));
}

TEST_P(FormatsContract, DatesBefore1900HaveTheirYear) {
  EXPECT_THAT(formats.ShortDate(0), HasSubstr("1899"));
  EXPECT_THAT(formats.ShortDate(0), HasSubstr("30"));
  EXPECT_THAT(formats.LongDate(0), HasSubstr("Saturday"));
  EXPECT_THAT(formats.LongDate(MakeDate({1601, 1, 1})), HasSubstr("Monday"));
}

TEST_P(FormatsContract, NumbersHaveThousandsAndTwoDecimals) {
  EXPECT_EQ(formats.StandardNumber(1234.5), "1,234.50");
  EXPECT_EQ(formats.StandardNumber(0), "0.00");
  EXPECT_EQ(formats.StandardNumber(999.994), "999.99");
  EXPECT_EQ(formats.StandardNumber(1234567), "1,234,567.00");
}

TEST_P(FormatsContract, HalvesGoAwayFromZero) {
  EXPECT_EQ(formats.StandardNumber(0.125), "0.13");
  EXPECT_EQ(formats.StandardNumber(0.375), "0.38");
  EXPECT_EQ(formats.StandardNumber(-0.125), "-0.13");
  EXPECT_EQ(formats.StandardNumber(1.005), "1.01");
}

}  // namespace
}  // namespace tarnvale::testing
