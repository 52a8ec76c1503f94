#include "core/scheduler.h"
#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kBadTime = "An Invalid Time Frame Has Been Entered";
constexpr const char* kBadInterval = "An Invalid Interval Has Been Entered.";

class ScheduleEntryTest : public EngineFixture {
 protected:
  ScheduleEntryTest() { WatchScreens(); }

  void TypeFixedTime(const std::string& text) {
    scheduler.EnterFixedTime();
    settings.AlwaysAtText = text;
    scheduler.LeaveFixedTime();
  }
  void TypeInterval(const std::string& text) {
    scheduler.EnterInterval();
    settings.EachText = text;
    scheduler.LeaveInterval();
  }
  void ExpectBox(const char* text) { machine.boxes.Expect(text, BoxIcon::kStop, BoxAnswer::kOk); }

  Scheduler& scheduler = engine.scheduler;
  BackupSettings& settings = engine.settings;
};

// --- the fixed time's field

TEST_F(ScheduleEntryTest, EnteringTheFixedTimeChoosesIt) {
  scheduler.EnterFixedTime();
  EXPECT_TRUE(settings.ScheduleAt);
  EXPECT_FALSE(settings.ScheduleEach);
}

TEST_F(ScheduleEntryTest, LeavingTheFixedTimeTakesHourAndMinute) {
  TypeFixedTime("12:34");
  EXPECT_EQ(settings.AlwaysAtTime, MakeTime({12, 34, 0}));
}

TEST_F(ScheduleEntryTest, LeavingTheFixedTimeWithZerosKeepsTheTime) {
  TypeFixedTime("12:34");
  TypeFixedTime("00:00");
  EXPECT_EQ(settings.AlwaysAtTime, MakeTime({12, 34, 0}));
}

TEST_F(ScheduleEntryTest, AnHourOf25IsNoTime) {
  TypeFixedTime("12:34");
  ExpectBox(kBadTime);
  TypeFixedTime("25:00");
  EXPECT_EQ(settings.AlwaysAtTime, 0);
  EXPECT_TRUE(scheduler.BadAtTime());
  EXPECT_THAT(actions, IsEmpty());
}

TEST_F(ScheduleEntryTest, AMinuteOf60AndAnUnfilledMaskAreNoTimes) {
  for (const char* text : {"12:60", "__:__", "1_:30", ""}) {
    ExpectBox(kBadTime);
    TypeFixedTime(text);
    EXPECT_TRUE(scheduler.BadAtTime()) << text;
  }
}

TEST_F(ScheduleEntryTest, EnteringTheFixedTimeAgainForgivesTheBadOne) {
  ExpectBox(kBadTime);
  TypeFixedTime("25:00");
  scheduler.EnterFixedTime();
  EXPECT_FALSE(scheduler.BadAtTime());
}

TEST_F(ScheduleEntryTest, ABadIntervalKeepsTheFixedTimeFromBeingTaken) {
  ExpectBox(kBadInterval);
  TypeInterval("25:00");
  TypeFixedTime("12:34");
  EXPECT_EQ(settings.AlwaysAtTime, 0);
  scheduler.EnterInterval();
  TypeFixedTime("12:34");
  EXPECT_EQ(settings.AlwaysAtTime, MakeTime({12, 34, 0}));
}

// --- the interval's field

TEST_F(ScheduleEntryTest, EnteringTheIntervalChoosesIt) {
  settings.ScheduleAt = true;
  scheduler.EnterInterval();
  EXPECT_TRUE(settings.ScheduleEach);
  EXPECT_FALSE(settings.ScheduleAt);
}

TEST_F(ScheduleEntryTest, LeavingTheIntervalTakesHourAndMinute) {
  TypeInterval("23:59");
  EXPECT_EQ(settings.EachTime, MakeTime({23, 59, 0}));
}

TEST_F(ScheduleEntryTest, LeavingTheIntervalWithZerosClearsTheFixedTimeAndNotTheInterval) {
  TypeInterval("01:30");
  TypeFixedTime("12:34");
  TypeInterval("00:00");
  EXPECT_TRUE(settings.ScheduleAt);
  EXPECT_EQ(settings.AlwaysAtTime, 0);
  EXPECT_EQ(settings.EachTime, MakeTime({1, 30, 0}));
}

TEST_F(ScheduleEntryTest, AfterZerosInTheIntervalThePageShowsNoRunBesideTheOldText) {
  TypeFixedTime("12:34");
  TypeInterval("00:00");
  machine.Advance(100ms);
  EXPECT_EQ(engine.display.NextRun.Get(), "No Backup Has Scheduled");
  EXPECT_EQ(settings.AlwaysAtText.Get(), "12:34");
}

TEST_F(ScheduleEntryTest, AnIntervalOf25HoursIsNoTimeAndTakesTheFocusBack) {
  TypeInterval("01:30");
  ExpectBox(kBadInterval);
  TypeInterval("25:00");
  EXPECT_EQ(settings.EachTime, 0);
  EXPECT_TRUE(scheduler.BadEachTime());
  EXPECT_THAT(actions, ElementsAre("focus interval"));
}

TEST_F(ScheduleEntryTest, TheFocusComesBackAfterTheMessage) {
  ExpectBox(kBadInterval);
  machine.boxes.WhileOpen([&] { EXPECT_THAT(actions, IsEmpty()); });
  TypeInterval("25:00");
  EXPECT_EQ(actions.size(), 1U);
}

TEST_F(ScheduleEntryTest, EnteringTheIntervalAgainForgivesTheBadOne) {
  ExpectBox(kBadInterval);
  TypeInterval("25:00");
  scheduler.EnterInterval();
  EXPECT_FALSE(scheduler.BadEachTime());
}

TEST_F(ScheduleEntryTest, ABadFixedTimeKeepsTheIntervalFromBeingTaken) {
  ExpectBox(kBadTime);
  TypeFixedTime("25:00");
  TypeInterval("01:30");
  EXPECT_EQ(settings.EachTime, 0);
  TypeInterval("00:00");
  EXPECT_TRUE(settings.ScheduleEach);
}

// --- live at once

TEST_F(ScheduleEntryTest, ATimeCountsFromTheMomentItsFieldIsLeft) {
  TypeFixedTime("12:00");
  machine.SetTime("12:00");
  scheduler.Tick();
  EXPECT_TRUE(engine.timers[EngineTimer::kRunPause].Enabled);
  EXPECT_FALSE(machine.files.Exists("C:\\Data\\Tarnvale.ini"));
}

TEST_F(ScheduleEntryTest, EveryDayClearsAllSevenDays) {
  for (Property<bool>& day : settings.WeekDays) day = true;
  scheduler.ChooseEveryDay();
  for (const Property<bool>& day : settings.WeekDays) EXPECT_FALSE(day);
  EXPECT_TRUE(settings.EveryDay);
}

}  // namespace
}  // namespace tarnvale::testing
