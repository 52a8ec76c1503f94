#include <gmock/gmock.h>

#include "tests/settings/settings_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class SaveChangesTest : public SettingsFixture {
 protected:
  SaveChangesTest() { settings.DataFolder = "C:\\Data"; }

  void FillAll() {
    settings.AlwaysAtText = "12:00";
    settings.ScheduleAt = true;
    settings.WeekDays[2] = true;
    settings.WeekDays[5] = true;
    settings.ShowAlert = false;
    settings.AutoCompress = true;
    settings.AutoUpload = true;
    settings.BackupMode.Incremental = true;
    settings.DestinationDir = "D:\\Backup";
    settings.CompressDir = "D:\\Archive";
    settings.SmtpServer = "mail.example";
    settings.ReportTo = "ann@example,bob@example";
    settings.FtpServer = "ftp.example";
    settings.FtpUsername = "ann";
    settings.FtpPassword = "pass word=1";
    settings.Entries.Append("C:\\a.txt");
    settings.Entries.Append("C:\\Data\\*+++++*");
  }

  // What a start after this save finds.
  void LoadInto(BackupSettings& loaded) {
    SettingsStore(interfaces, interfaces.loop, interfaces.desktop, loaded).LoadSettings();
  }
};

TEST_F(SaveChangesTest, WritesTheWholeFileInItsOrder) {
  FillAll();
  store.SaveChanges();
  EXPECT_EQ(File(),
            "[When]\r\n"
            "AlwaysAt=12:00\r\n"
            "Each=???\r\n"
            "Default=False\r\n"
            "Days=36\r\n"
            "[Log]\r\n"
            "Save=True\r\n"
            "[Alert]\r\n"
            "Show=False\r\n"
            "[Compress]\r\n"
            "Auto=True\r\n"
            "[Reports]\r\n"
            "Send=False\r\n"
            "[FTP]\r\n"
            "Auto=True\r\n"
            "Server=ftp.example\r\n"
            "Username=ann\r\n"
            "Password=pass word=1\r\n"
            "[Backup]\r\n"
            "Incremental=True\r\n"
            "[Method]\r\n"
            "Syncro=True\r\n"
            "[Destiny]\r\n"
            "Dir=D:\\Backup\r\n"
            "Backup=D:\\Archive\r\n"
            "[Server]\r\n"
            "STMP=mail.example\r\n"
            "[Send]\r\n"
            "To=ann@example,bob@example\r\n"
            "[Setup]\r\n"
            "Wizard=1\r\n"
            "[Entries]\r\n"
            "0=C:\\a.txt\r\n"
            "1=C:\\Data\\*+++++*\r\n");
}

TEST_F(SaveChangesTest, KeysAreWrittenInTheirOrder) {
  FillAll();
  store.SaveChanges();
  EXPECT_THAT(
      profiles.writes,
      ElementsAre("When/AlwaysAt=12:00", "When/Each=???", "When/Default=False", "When/Days=36",
                  "Log/Save=True", "Alert/Show=False", "Compress/Auto=True", "Reports/Send=False",
                  "FTP/Auto=True", "Backup/Incremental=True", "Method/Syncro=True",
                  "Destiny/Dir=D:\\Backup", "Destiny/Backup=D:\\Archive",
                  "Server/STMP=mail.example", "Send/To=ann@example,bob@example", "Setup/Wizard=1",
                  "FTP/Server=ftp.example", "FTP/Username=ann", "FTP/Password=pass word=1",
                  "Entries/0=C:\\a.txt", "Entries/1=C:\\Data\\*+++++*"));
}

TEST_F(SaveChangesTest, SavingTwiceLeavesTheFileByteForByte) {
  WriteFile("; mine\n[entries]\n9=C:\\old.txt\nnote = kept \n\n[Other]\nx=1\n");
  FillAll();
  store.SaveChanges();
  const std::string first = File();
  store.SaveChanges();
  EXPECT_EQ(File(), first);
}

TEST_F(SaveChangesTest, LinesThatAreNotItsOwnStay) {
  WriteFile("; mine\r\n[Other]\r\nx=1\r\n[Log]\r\nSave=False\r\nnote = kept \r\n");
  store.SaveChanges();
  EXPECT_THAT(File(), HasSubstr("; mine\r\n[Other]\r\nx=1\r\n[Log]\r\nSave=True\r\nnote = kept "));
}

TEST_F(SaveChangesTest, ASaveReplacesTheValuesOfTheLastOne) {
  FillAll();
  store.SaveChanges();
  settings.FtpPassword = "other";
  settings.BackupMode.Complete = true;
  store.SaveChanges();
  EXPECT_THAT(File(), HasSubstr("\r\nPassword=other\r\n"));
  EXPECT_THAT(File(), HasSubstr("[Backup]\r\nIncremental=False\r\n[Method]\r\nSyncro=False\r\n"));
}

TEST_F(SaveChangesTest, SavingSetsTheSaveMarkAndLeavesTheWizardMark) {
  store.SaveChanges();
  EXPECT_EQ(settings.SaveMark.Get(), "1");
  EXPECT_EQ(settings.WizardMark.Get(), "0");
  EXPECT_THAT(profiles.writes, Contains("Setup/Wizard=1"));
}

TEST_F(SaveChangesTest, ThePointerIsBusyForTheSaveAndNormalAfterwards) {
  PointerShape while_marking = PointerShape::kDefault;
  settings.SaveMark.Changed.Listen([&] { while_marking = machine.desktop.Pointer; });
  store.SaveChanges();
  EXPECT_EQ(while_marking, PointerShape::kHourglass);
  EXPECT_EQ(machine.desktop.Pointer, PointerShape::kDefault);
}

// --- the schedule

TEST_F(SaveChangesTest, SavingTakesTheParsedTimesFromTheFields) {
  settings.AlwaysAtText = "12:34";
  settings.EachText = "01:30";
  store.SaveChanges();
  EXPECT_EQ(settings.AlwaysAtTime, MakeTime({12, 34, 0}));
  EXPECT_EQ(settings.EachTime, MakeTime({1, 30, 0}));
}

TEST_F(SaveChangesTest, ATimeNotSetIsWrittenAsQuestionMarksAndReloadsAsZeros) {
  settings.AlwaysAtTime = MakeTime({9, 15, 0});
  settings.EachTime = MakeTime({1, 0, 0});
  store.SaveChanges();
  EXPECT_THAT(File(), HasSubstr("AlwaysAt=???\r\nEach=???\r\n"));
  EXPECT_EQ(settings.AlwaysAtTime, 0);
  EXPECT_EQ(settings.EachTime, 0);
  BackupSettings loaded;
  LoadInto(loaded);
  EXPECT_EQ(loaded.AlwaysAtText.Get(), "00:00");
  EXPECT_EQ(loaded.EachText.Get(), "00:00");
}

TEST_F(SaveChangesTest, DefaultIsFalseForTheFixedTimeOnly) {
  settings.ScheduleAt = true;
  store.SaveChanges();
  EXPECT_THAT(profiles.writes, Contains("When/Default=False"));
  settings.ScheduleEach = true;
  store.SaveChanges();
  EXPECT_THAT(profiles.writes, Contains("When/Default=True"));
}

TEST_F(SaveChangesTest, EveryDayIsWrittenAsDaysZeroAndReloadsAsEveryDay) {
  settings.WeekDays[2] = true;
  settings.EveryDay = true;
  store.SaveChanges();
  EXPECT_THAT(profiles.writes, Contains("When/Days=0"));
  BackupSettings loaded;
  LoadInto(loaded);
  EXPECT_TRUE(loaded.EveryDay);
  EXPECT_FALSE(loaded.WeekDays[2]);
}

// --- what doesn't come back as it went

TEST_F(SaveChangesTest, ASavedSyncModeComesBackAsCompleteMode) {
  settings.BackupMode.Sync = true;
  store.SaveChanges();
  EXPECT_THAT(File(), HasSubstr("[Backup]\r\nIncremental=False\r\n[Method]\r\nSyncro=False\r\n"));
  BackupSettings loaded;
  LoadInto(loaded);
  EXPECT_TRUE(loaded.BackupMode.Complete);
  EXPECT_FALSE(loaded.SyncroFlag);
}

TEST_F(SaveChangesTest, ASavedIncrementalModeComesBack) {
  settings.BackupMode.Incremental = true;
  store.SaveChanges();
  BackupSettings loaded;
  LoadInto(loaded);
  EXPECT_TRUE(loaded.BackupMode.Incremental);
}

TEST_F(SaveChangesTest, TheTailOfAShrunkListComesBack) {
  for (const char* item : {"1st", "2nd", "3rd", "4th", "5th"}) settings.Entries.Append(item);
  store.SaveChanges();
  settings.Entries.RemoveAt(1);
  settings.Entries.RemoveAt(0);
  store.SaveChanges();
  BackupSettings loaded;
  LoadInto(loaded);
  EXPECT_THAT(loaded.Entries.Rows(), ElementsAre("3rd", "4th", "5th", "4th", "5th"));
}

TEST_F(SaveChangesTest, AnItemIsWrittenWholeThoughOnly254CharactersComeBack) {
  const std::string item(300, 'x');
  settings.Entries.Append(item);
  store.SaveChanges();
  EXPECT_THAT(File(), HasSubstr("0=" + item + "\r\n"));
  BackupSettings loaded;
  LoadInto(loaded);
  EXPECT_THAT(loaded.Entries.Rows(), ElementsAre(std::string(254, 'x')));
}

TEST_F(SaveChangesTest, ThePasswordIsStoredPlain) {
  settings.FtpPassword = "open secret";
  store.SaveChanges();
  EXPECT_THAT(File(), HasSubstr("Password=open secret\r\n"));
}

// --- failures

TEST_F(SaveChangesTest, AFailedWriteOfAnItemYieldsAndTheNextIsWritten) {
  for (const char* item : {"1st", "2nd", "3rd"}) settings.Entries.Append(item);
  int writes_before_yield = -1;
  // The writes of one save: 19 keys, then the items.
  machine.loop.OnYield(1, [&] {
    writes_before_yield = static_cast<int>(profiles.writes.size());
    machine.profiles.ClearFailures();
  });
  machine.profiles.FailAlways("Write", 75);
  store.SaveChanges();
  EXPECT_EQ(writes_before_yield, 20);
  EXPECT_EQ(machine.loop.YieldCount(), 1);
  EXPECT_EQ(File(), "[Entries]\r\n1=2nd\r\n2=3rd\r\n");
}

TEST_F(SaveChangesTest, OtherFailedWritesDoNotYield) {
  machine.profiles.FailNext("Write", 75);
  store.SaveChanges();
  EXPECT_EQ(machine.loop.YieldCount(), 0);
  EXPECT_THAT(File(), Not(HasSubstr("AlwaysAt")));
  EXPECT_THAT(File(), HasSubstr("Each=???"));
}

TEST_F(SaveChangesTest, AFolderThatIsGoneFailsInSilence) {
  settings.DataFolder = "Z:\\Gone";
  settings.Entries.Append("C:\\a.txt");
  store.SaveChanges();
  EXPECT_TRUE(machine.boxes.Shown().empty());
  EXPECT_EQ(machine.desktop.Pointer, PointerShape::kDefault);
}

TEST_F(SaveChangesTest, ASaveGoesWhereDataFolderPointsNow) {
  machine.files.MakeFolder("C:\\Elsewhere");
  settings.DataFolder = "C:\\Elsewhere";
  store.SaveChanges();
  EXPECT_TRUE(machine.files.Exists("C:\\Elsewhere\\Tarnvale.ini"));
  EXPECT_FALSE(machine.files.Exists("C:\\Data\\Tarnvale.ini"));
}

}  // namespace
}  // namespace tarnvale::testing
