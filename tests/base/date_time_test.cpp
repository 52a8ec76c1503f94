#include "base/date_time.h"

#include <gtest/gtest.h>

#include "tests/support/raised.h"

namespace tarnvale {
namespace {

using testing::RaisedBy;

TEST(DateTimeTest, DaysCountFromTheEndOf1899) {
  EXPECT_EQ(MakeDate({1899, 12, 30}), 0);
  EXPECT_EQ(MakeDate({1900, 1, 1}), 2);
  EXPECT_EQ(MakeDate({1970, 1, 1}), 25569);
  EXPECT_EQ(MakeDate({2008, 2, 29}), 39507);
  EXPECT_EQ(MakeDate({1899, 12, 29}), -1);
}

TEST(DateTimeTest, TheFractionIsTheTimeOfDay) {
  EXPECT_EQ(MakeTime({12, 0, 0}), 0.5);
  EXPECT_EQ(MakeTime({18, 0, 0}), 0.75);
  EXPECT_EQ(MakeDateTime({1900, 1, 1}, {6, 0, 0}), 2.25);
}

TEST(DateTimeTest, EverySecondOfADayComesBack) {
  const DateTime day = MakeDate({2008, 3, 14});
  for (int second = 0; second < 86400; ++second) {
    const TimeOfDay time{second / 3600, second / 60 % 60, second % 60};
    const DateTime value = MakeDateTime({2008, 3, 14}, time);
    ASSERT_EQ(TimeOf(value), time);
    ASSERT_EQ(DatePart(value), day);
    ASSERT_EQ(TimePart(value), MakeTime(time));
  }
}

TEST(DateTimeTest, SplittingRoundsToTheNearestSecond) {
  const DateTime almost_midnight = MakeDateTime({2008, 3, 14}, {23, 59, 59}) + 0.6 / 86400;
  EXPECT_EQ(DateOf(almost_midnight), (CivilDate{2008, 3, 15}));
  EXPECT_EQ(TimeOf(almost_midnight), (TimeOfDay{0, 0, 0}));
  EXPECT_EQ(DatePart(almost_midnight), MakeDate({2008, 3, 15}));
}

TEST(DateTimeTest, SumsOfTheSameSecondAreTheSameNumber) {
  EXPECT_EQ(TimePart(MakeTime({11, 50, 0}) + MakeTime({0, 10, 0})), MakeTime({12, 0, 0}));
  EXPECT_EQ(TimePart(MakeTime({23, 30, 0}) + MakeTime({1, 0, 0})), MakeTime({0, 30, 0}));
}

TEST(DateTimeTest, TheMinuteHasNoSeconds) {
  EXPECT_EQ(MinutePart(MakeDateTime({2008, 3, 14}, {11, 59, 59})), MakeTime({11, 59, 0}));
}

TEST(DateTimeTest, DatesBeforeTheFirstDayWork) {
  EXPECT_EQ(DateOf(-1), (CivilDate{1899, 12, 29}));
  EXPECT_EQ(DateOf(-0.25), (CivilDate{1899, 12, 29}));
  EXPECT_EQ(TimeOf(-0.25), (TimeOfDay{18, 0, 0}));
}

TEST(DateTimeTest, SundayIsDay1) {
  EXPECT_EQ(WeekdayOf(MakeDate({2008, 3, 16})), 1);
  EXPECT_EQ(WeekdayOf(MakeDateTime({2008, 3, 15}, {23, 59, 59})), 7);
  EXPECT_EQ(WeekdayOf(0), 7);
  EXPECT_EQ(WeekdayOf(-1), 6);
  EXPECT_EQ(WeekdayOf(-7), 7);
}

TEST(DateTimeTest, TextsBecomeTimes) {
  EXPECT_EQ(TextToTime("12:00"), MakeTime({12, 0, 0}));
  EXPECT_EQ(TextToTime("9:05"), MakeTime({9, 5, 0}));
  EXPECT_EQ(TextToTime("  23:59:58 "), MakeTime({23, 59, 58}));
  EXPECT_EQ(TextToTime("00:00"), 0);
}

TEST(DateTimeTest, TheTwelveHourClockIsUnderstood) {
  EXPECT_EQ(TextToTime("12:00 AM"), 0);
  EXPECT_EQ(TextToTime("12:00:00 pm"), MakeTime({12, 0, 0}));
  EXPECT_EQ(TextToTime("1:15PM"), MakeTime({13, 15, 0}));
  EXPECT_EQ(TextToTime("11:59 am"), MakeTime({11, 59, 0}));
}

TEST(DateTimeTest, AnythingElseRaises13) {
  for (const char* text : {"", "12", "12:", ":30", "24:00", "12:60", "12:00:60", "12:000", "123:00",
                           "12:00 XM", "13:00 PM", "0:30 AM", "__:__", "???", "12:00:", "12 :00"}) {
    EXPECT_EQ(RaisedBy([&] { TextToTime(text); }), 13) << text;
  }
}

}  // namespace
}  // namespace tarnvale
