#include "settings/backup_settings.h"

#include <gtest/gtest.h>

namespace tarnvale::testing {
namespace {

class BackupSettingsTest : public ::testing::Test {
 protected:
  BackupSettings settings;
};

TEST_F(BackupSettingsTest, BeginsWithTheDesignDefaults) {
  EXPECT_EQ(settings.DataFolder.Get(), "None");
  EXPECT_EQ(settings.AlwaysAtText.Get(), "00:00");
  EXPECT_EQ(settings.EachText.Get(), "00:00");
  EXPECT_EQ(settings.AlwaysAtTime, 0);
  EXPECT_EQ(settings.EachTime, 0);
  EXPECT_FALSE(settings.UseEach);
  EXPECT_FALSE(settings.ScheduleAt);
  EXPECT_TRUE(settings.ScheduleEach);
  EXPECT_TRUE(settings.EveryDay);
  for (const Property<bool>& day : settings.WeekDays) EXPECT_FALSE(day);
  EXPECT_EQ(settings.LoadMinute, 0);
  EXPECT_EQ(settings.Entries.Count(), 0U);
}

TEST_F(BackupSettingsTest, BeginsWithLogAndAlertOnAndTheStagesOff) {
  EXPECT_TRUE(settings.SaveLog);
  EXPECT_TRUE(settings.ShowAlert);
  EXPECT_FALSE(settings.AutoCompress);
  EXPECT_FALSE(settings.AutoUpload);
  EXPECT_FALSE(settings.AutoReport);
}

TEST_F(BackupSettingsTest, BeginsWithTheDefaultTexts) {
  EXPECT_EQ(settings.DestinationDir.Get(), "None");
  EXPECT_EQ(settings.CompressDir.Get(), "C:\\");
  EXPECT_EQ(settings.SmtpServer.Get(), "");
  EXPECT_EQ(settings.ReportTo.Get(), "");
  EXPECT_EQ(settings.FtpServer.Get(), "0");
  EXPECT_EQ(settings.FtpUsername.Get(), "0");
  EXPECT_EQ(settings.FtpPassword.Get(), "0");
  EXPECT_EQ(settings.WizardMark.Get(), "0");
}

TEST_F(BackupSettingsTest, BeginsInCompleteModeWithBothFlagsClear) {
  EXPECT_TRUE(settings.BackupMode.Complete);
  EXPECT_FALSE(settings.BackupMode.Incremental);
  EXPECT_FALSE(settings.BackupMode.Sync);
  EXPECT_FALSE(settings.IncrementalFlag);
  EXPECT_FALSE(settings.SyncroFlag);
}

TEST_F(BackupSettingsTest, IncrementalModeSetsItsFlagAndClearsTheOther) {
  settings.BackupMode.Sync = true;
  settings.BackupMode.Incremental = true;
  EXPECT_TRUE(settings.IncrementalFlag);
  EXPECT_FALSE(settings.SyncroFlag);
  EXPECT_FALSE(settings.BackupMode.Sync);
  EXPECT_FALSE(settings.BackupMode.Complete);
}

TEST_F(BackupSettingsTest, SyncModeSetsItsFlagAndClearsTheOther) {
  settings.BackupMode.Incremental = true;
  settings.BackupMode.Sync = true;
  EXPECT_TRUE(settings.SyncroFlag);
  EXPECT_FALSE(settings.IncrementalFlag);
  EXPECT_FALSE(settings.BackupMode.Incremental);
}

TEST_F(BackupSettingsTest, CompleteModeClearsBothFlags) {
  settings.BackupMode.Sync = true;
  settings.BackupMode.Complete = true;
  EXPECT_FALSE(settings.SyncroFlag);
  EXPECT_FALSE(settings.IncrementalFlag);
  EXPECT_FALSE(settings.BackupMode.Sync);
}

TEST_F(BackupSettingsTest, ChoosingAModePutsTheOthersOut) {
  settings.ChooseMode(settings.BackupMode.Sync);
  EXPECT_TRUE(settings.BackupMode.Sync);
  EXPECT_FALSE(settings.BackupMode.Complete);
}

TEST_F(BackupSettingsTest, ChoosingTheModeThatIsChosenSetsItsFlagsAgain) {
  settings.IncrementalFlag = true;
  settings.SyncroFlag = true;
  settings.ChooseMode(settings.BackupMode.Complete);
  EXPECT_FALSE(settings.IncrementalFlag);
  EXPECT_FALSE(settings.SyncroFlag);
}

TEST_F(BackupSettingsTest, TakingTheSyncModeBackLeavesNoModeAndItsFlag) {
  settings.BackupMode.Sync = true;
  settings.BackupMode.Sync = false;
  EXPECT_FALSE(settings.BackupMode.Complete);
  EXPECT_FALSE(settings.BackupMode.Incremental);
  EXPECT_TRUE(settings.SyncroFlag);
}

TEST_F(BackupSettingsTest, TheTwoSchedulesExcludeOneAnother) {
  settings.ScheduleAt = true;
  EXPECT_FALSE(settings.ScheduleEach);
  settings.ScheduleEach = true;
  EXPECT_FALSE(settings.ScheduleAt);
}

TEST_F(BackupSettingsTest, TickingADayClearsEveryDay) {
  settings.WeekDays[3] = true;
  EXPECT_FALSE(settings.EveryDay);
}

TEST_F(BackupSettingsTest, ClearingADayDoesNotBringEveryDayBack) {
  settings.WeekDays[3] = true;
  settings.WeekDays[3] = false;
  EXPECT_FALSE(settings.EveryDay);
}

TEST_F(BackupSettingsTest, EachDayHasItsBitInTheMask) {
  for (std::size_t day = 0; day < 7; ++day) {
    BackupSettings one;
    one.WeekDays[day] = true;
    EXPECT_EQ(one.DayMask(), 1 << day) << "day " << day;
  }
}

TEST_F(BackupSettingsTest, TheMaskOfAllDaysIs127) {
  for (Property<bool>& day : settings.WeekDays) day = true;
  EXPECT_EQ(settings.DayMask(), 127);
}

TEST_F(BackupSettingsTest, TheMaskIsZeroWhileEveryDayIsSet) {
  settings.WeekDays[0] = true;
  settings.EveryDay = true;
  EXPECT_EQ(settings.DayMask(), 0);
}

TEST_F(BackupSettingsTest, TheMaskIsZeroWithNoDayTicked) {
  settings.EveryDay = false;
  EXPECT_EQ(settings.DayMask(), 0);
}

TEST(FitsTimeMaskTest, TakesTwoDigitsAColonTwoDigits) {
  EXPECT_TRUE(FitsTimeMask("00:00"));
  EXPECT_TRUE(FitsTimeMask("25:99"));
  for (const char* text : {"", "9:30", "09:3", "009:30", "09.30", "a9:30", "0a:30", "09:a0",
                           "09:3b", " 9:30", "09:30 "}) {
    EXPECT_FALSE(FitsTimeMask(text)) << text;
  }
}

TEST(BackupListTest, KnowsAnEntryOnlyByItsExactText) {
  BackupList list;
  list.Append("C:\\Data\\a.txt");
  EXPECT_TRUE(list.IsInBackupList("C:\\Data\\a.txt"));
  EXPECT_FALSE(list.IsInBackupList("C:\\DATA\\a.txt"));
  EXPECT_FALSE(list.IsInBackupList("C:\\Data\\a.tx"));
}

}  // namespace
}  // namespace tarnvale::testing
