#include "hosts/linux/linux_locale_formats.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/hosts/contract/temporary_folder.h"
#include "tests/hosts/contract/variable_for.h"

// The C library keeps a copy of LOCPATH for each locale that is found there.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the sanitizer's name
extern "C" const char* __lsan_default_suppressions() {
  return "leak:argz_add_sep";
}

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

// Made for the test, as few machines have both.
TEST_F(LinuxLocaleFormatsTest, ALocaleGivesItsDatesTimesAndNumbers) {
  const TemporaryFolder folder;
  for (const char* name : {"de_DE", "en_US"}) {
    const std::string make = std::string("localedef -i ") + name + " -f UTF-8 '" + (folder / name) +
                             ".UTF-8' >/dev/null 2>&1";
    if (std::system(make.c_str()) != 0) GTEST_SKIP() << "this machine can't make " << name;
  }
  const VariableFor places("LOCPATH", folder.Path().c_str());
  LinuxLocaleFormats german("de_DE.UTF-8");
  EXPECT_EQ(german.GeneralDate(kMoment), "04.03.2008 17:09:05");
  EXPECT_EQ(german.LongDate(kMoment), "Dienstag, 4 März 2008");
  EXPECT_EQ(german.StandardNumber(1234567.5), "1.234.567,50");
  LinuxLocaleFormats american("en_US.UTF-8");
  EXPECT_EQ(american.GeneralDate(kMoment), "03/04/2008 05:09:05 PM");
  EXPECT_EQ(american.LongDate(kMoment), "Tuesday, March 4, 2008");
  EXPECT_EQ(american.StandardNumber(1234567.5), "1,234,567.50");
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
