#include "hosts/linux/linux_locale_formats.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tarnvale::testing {
namespace {

const DateTime kMoment = MakeDateTime({2008, 3, 4}, {17, 9, 5});

class LinuxLocaleFormatsTest : public ::testing::Test {
 protected:
  LinuxLocaleFormats formats{"C"};
};

TEST_F(LinuxLocaleFormatsTest, ThePlainLocaleWritesDatesFromTheYearOn) {
  EXPECT_EQ(formats.ShortDate(kMoment), "2008-03-04");
  EXPECT_EQ(formats.LongTime(kMoment), "17:09:05");
  EXPECT_EQ(formats.GeneralDate(kMoment), "2008-03-04 17:09:05");
  EXPECT_EQ(formats.LongDate(kMoment), "Tuesday, 2008 March 4");
}

TEST_F(LinuxLocaleFormatsTest, DatesBefore1900HaveTheirDayOfTheWeek) {
  EXPECT_EQ(formats.ShortDate(0), "1899-12-30");
  EXPECT_EQ(formats.LongDate(0), "Saturday, 1899 December 30");
  EXPECT_EQ(formats.GeneralDate(-1.25), "1899-12-28 18:00:00");
}

TEST_F(LinuxLocaleFormatsTest, ThePlainUtf8LocaleIsAsPlain) {
  LinuxLocaleFormats utf8("C.UTF-8");
  EXPECT_EQ(utf8.ShortDate(kMoment), "2008-03-04");
  EXPECT_EQ(utf8.StandardNumber(1234.5), "1,234.50");
}

TEST_F(LinuxLocaleFormatsTest, ALocaleThatIsNotInstalledCountsAsPlain) {
  LinuxLocaleFormats unknown("xx_XX.NOWHERE");
  EXPECT_EQ(unknown.GeneralDate(kMoment), "2008-03-04 17:09:05");
  EXPECT_EQ(unknown.StandardNumber(1234.5), "1,234.50");
}

TEST_F(LinuxLocaleFormatsTest, TheEnvironmentNamesTheLocale) {
  ::setenv("LC_ALL", "POSIX", 1);
  LinuxLocaleFormats environment;
  ::unsetenv("LC_ALL");
  EXPECT_EQ(environment.ShortDate(kMoment), "2008-03-04");
}

TEST_F(LinuxLocaleFormatsTest, TheShortDateGivesTheOrder) {
  EXPECT_EQ(OrderOf("%d.%m.%Y"), DateOrder::kDayMonthYear);
  EXPECT_EQ(OrderOf("%-d/%-m/%y"), DateOrder::kDayMonthYear);
  EXPECT_EQ(OrderOf("%a %e %b %Y"), DateOrder::kDayMonthYear);
  EXPECT_EQ(OrderOf("%m/%d/%Y"), DateOrder::kMonthDayYear);
  EXPECT_EQ(OrderOf("%D"), DateOrder::kMonthDayYear);
  EXPECT_EQ(OrderOf("%Y-%m-%d"), DateOrder::kYearMonthDay);
  EXPECT_EQ(OrderOf("%F"), DateOrder::kYearMonthDay);
  EXPECT_EQ(OrderOf("%Ey. %m. %d"), DateOrder::kYearMonthDay);
  EXPECT_EQ(OrderOf("100%%: %m/%d"), DateOrder::kMonthDayYear);
  EXPECT_EQ(OrderOf(""), DateOrder::kDayMonthYear);
}

}  // namespace
}  // namespace tarnvale::testing
