#include <gmock/gmock.h>

#include "tests/settings/settings_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class LoadSettingsTest : public SettingsFixture {};

// --- the pointer file

TEST_F(LoadSettingsTest, DataFolderIsTheFirstItemOfThePointerFile) {
  machine.files.Write("C:\\Program\\Data.txt", "  C:\\Data\r\nC:\\Other\r\n");
  store.LoadSettings();
  EXPECT_EQ(settings.DataFolder.Get(), "C:\\Data");
  EXPECT_EQ(settings.SettingsFile(), "C:\\Data\\Tarnvale.ini");
}

TEST_F(LoadSettingsTest, AnUnquotedPathIsCutAtItsComma) {
  machine.files.Write("C:\\Program\\Data.txt", "C:\\Data, mine\r\n");
  store.LoadSettings();
  EXPECT_EQ(settings.DataFolder.Get(), "C:\\Data");
}

TEST_F(LoadSettingsTest, AQuotedPathKeepsItsCommaAndLosesItsQuotes) {
  machine.files.Write("C:\\Program\\Data.txt", "\"C:\\Data, mine\",rest\r\n");
  store.LoadSettings();
  EXPECT_EQ(settings.DataFolder.Get(), "C:\\Data, mine");
}

TEST_F(LoadSettingsTest, WithoutAPointerFileTheSettingsLieAtTheRootOfTheDrive) {
  machine.files.Remove("C:\\Program\\Data.txt");
  machine.files.Write("C:\\Tarnvale.ini", "[Destiny]\r\nDir=C:\\Backup\r\n");
  store.LoadSettings();
  EXPECT_EQ(settings.DataFolder.Get(), "");
  EXPECT_EQ(settings.SettingsFile(), "\\Tarnvale.ini");
  EXPECT_EQ(settings.DestinationDir.Get(), "C:\\Backup");
}

TEST_F(LoadSettingsTest, AnEmptyPointerFileLeavesAnEmptyDataFolder) {
  machine.files.Write("C:\\Program\\Data.txt", "");
  store.LoadSettings();
  EXPECT_EQ(settings.DataFolder.Get(), "");
}

TEST_F(LoadSettingsTest, ThePointerFileIsClosedAfterwardsAndLeftAsItWas) {
  store.LoadSettings();
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
  EXPECT_EQ(machine.files.Content("C:\\Program\\Data.txt"), "C:\\Data\r\n");
}

// --- order and absence

TEST_F(LoadSettingsTest, KeysAreReadInTheirOrder) {
  Load("[Entries]\r\n0=C:\\a.txt\r\n");
  EXPECT_THAT(profiles.reads,
              ElementsAre("When/AlwaysAt", "When/Each", "When/Default", "When/Days",     //
                          "Log/Save", "Log/Save", "Alert/Show", "Alert/Show",            //
                          "Compress/Auto", "FTP/Auto", "FTP/Auto",                       //
                          "Reports/Send", "Reports/Send", "Compress/Auto",               //
                          "Backup/Incremental", "Backup/Incremental", "Method/Syncro",   //
                          "Destiny/Dir", "Destiny/Backup", "Server/STMP", "Send/To",     //
                          "FTP/Server", "FTP/Username", "Setup/Wizard", "FTP/Password",  //
                          "Entries/0", "Entries/1"));
}

TEST_F(LoadSettingsTest, WithoutAFileFlagsAndTimesKeepTheirDefaults) {
  store.LoadSettings();
  EXPECT_EQ(settings.AlwaysAtText.Get(), "00:00");
  EXPECT_EQ(settings.EachText.Get(), "00:00");
  EXPECT_FALSE(settings.UseEach);
  EXPECT_TRUE(settings.EveryDay);
  EXPECT_TRUE(settings.SaveLog);
  EXPECT_TRUE(settings.ShowAlert);
  EXPECT_FALSE(settings.AutoCompress);
  EXPECT_FALSE(settings.AutoUpload);
  EXPECT_FALSE(settings.AutoReport);
  EXPECT_TRUE(settings.BackupMode.Complete);
  EXPECT_EQ(settings.Entries.Count(), 0U);
}

TEST_F(LoadSettingsTest, WithoutAFileAllEightTextsBecomeEmpty) {
  store.LoadSettings();
  EXPECT_EQ(settings.DestinationDir.Get(), "");
  EXPECT_EQ(settings.CompressDir.Get(), "");
  EXPECT_EQ(settings.SmtpServer.Get(), "");
  EXPECT_EQ(settings.ReportTo.Get(), "");
  EXPECT_EQ(settings.FtpServer.Get(), "");
  EXPECT_EQ(settings.FtpUsername.Get(), "");
  EXPECT_EQ(settings.WizardMark.Get(), "");
  EXPECT_EQ(settings.FtpPassword.Get(), "");
}

TEST_F(LoadSettingsTest, TextsComeFromTheirKeys) {
  Load(
      "[Destiny]\r\nDir=C:\\Backup\r\nBackup=D:\\Archive\r\n[Server]\r\nSTMP=mail.example\r\n"
      "[Send]\r\nTo=ann@example,bob@example\r\n[FTP]\r\nServer=ftp.example\r\nUsername=ann\r\n"
      "Password=se cret\r\n[Setup]\r\nWizard=1\r\n");
  EXPECT_EQ(settings.DestinationDir.Get(), "C:\\Backup");
  EXPECT_EQ(settings.CompressDir.Get(), "D:\\Archive");
  EXPECT_EQ(settings.SmtpServer.Get(), "mail.example");
  EXPECT_EQ(settings.ReportTo.Get(), "ann@example,bob@example");
  EXPECT_EQ(settings.FtpServer.Get(), "ftp.example");
  EXPECT_EQ(settings.FtpUsername.Get(), "ann");
  EXPECT_EQ(settings.FtpPassword.Get(), "se cret");
  EXPECT_EQ(settings.WizardMark.Get(), "1");
}

TEST_F(LoadSettingsTest, LoadMinuteIsThePresentMinuteWithoutSeconds) {
  machine.SetTime("22:45:59");
  store.LoadSettings();
  EXPECT_EQ(settings.LoadMinute, MakeTime({22, 45, 0}));
}

// --- the schedule

TEST_F(LoadSettingsTest, ATimeFillsTheFieldAndItsParsedCopy) {
  Load("[When]\r\nAlwaysAt=12:34\r\nEach=01:30\r\n");
  EXPECT_EQ(settings.AlwaysAtText.Get(), "12:34");
  EXPECT_EQ(settings.AlwaysAtTime, MakeTime({12, 34, 0}));
  EXPECT_EQ(settings.EachText.Get(), "01:30");
  EXPECT_EQ(settings.EachTime, MakeTime({1, 30, 0}));
}

TEST_F(LoadSettingsTest, QuestionMarksClearTheTimeAndLeaveTheField) {
  settings.AlwaysAtText = "09:15";
  settings.AlwaysAtTime = MakeTime({9, 15, 0});
  Load("[When]\r\nAlwaysAt=???\r\n");
  EXPECT_EQ(settings.AlwaysAtText.Get(), "09:15");
  EXPECT_EQ(settings.AlwaysAtTime, 0);
}

TEST_F(LoadSettingsTest, AnAbsentTimeChangesNothing) {
  settings.AlwaysAtText = "09:15";
  settings.AlwaysAtTime = MakeTime({9, 15, 0});
  Load("[When]\r\nEach=01:30\r\n");
  EXPECT_EQ(settings.AlwaysAtText.Get(), "09:15");
  EXPECT_EQ(settings.AlwaysAtTime, MakeTime({9, 15, 0}));
}

TEST_F(LoadSettingsTest, ATextThatIsNoTimeStaysInTheFieldIfTheMaskTakesIt) {
  Load("[When]\r\nAlwaysAt=25:00\r\nEach=soon\r\n");
  EXPECT_EQ(settings.AlwaysAtText.Get(), "25:00");
  EXPECT_EQ(settings.AlwaysAtTime, 0);
  EXPECT_EQ(settings.EachText.Get(), "00:00");
  EXPECT_EQ(settings.EachTime, 0);
}

TEST_F(LoadSettingsTest, UseEachIsSetByAnythingButFalse) {
  for (const auto& [value, use_each] :
       {std::pair{"False", false}, {"True", true}, {"false", true}, {"0", true}}) {
    settings.UseEach = !use_each;
    Load(std::string("[When]\r\nDefault=") + value + "\r\n");
    EXPECT_EQ(settings.UseEach, use_each) << value;
  }
}

TEST_F(LoadSettingsTest, UseEachLeavesTheChoiceOfScheduleAlone) {
  Load("[When]\r\nDefault=False\r\n");
  EXPECT_TRUE(settings.ScheduleEach);
  EXPECT_FALSE(settings.ScheduleAt);
}

struct DaysCase {
  const char* value;
  const char* ticked;
};

class LoadDaysTest : public SettingsFixture, public ::testing::WithParamInterface<DaysCase> {};

TEST_P(LoadDaysTest, TicksTheDaysOfTheMask) {
  Load(std::string("[When]\r\nDays=") + GetParam().value + "\r\n");
  EXPECT_EQ(TickedDays(), GetParam().ticked);
  EXPECT_EQ(settings.EveryDay, std::string(GetParam().ticked) == ".......");
}

INSTANTIATE_TEST_SUITE_P(Masks, LoadDaysTest,
                         ::testing::Values(DaysCase{"0", "......."}, DaysCase{"1", "1......"},
                                           DaysCase{"2", ".2....."}, DaysCase{"64", "......7"},
                                           DaysCase{"36", "..3..6."}, DaysCase{"127", "1234567"},
                                           DaysCase{"126", ".234567"},
                                           // A quotient is never exactly 1 from here on.
                                           DaysCase{"128", "......."}, DaysCase{"129", "......."},
                                           DaysCase{"255", "......."},
                                           // No byte, or no number: the running value stays 0.
                                           DaysCase{"256", "......."}, DaysCase{"-1", "......."},
                                           DaysCase{"Monday", "......."},
                                           DaysCase{"3 days", "......."}));

// --- the switches

struct SwitchCase {
  const char* section;
  const char* key;
  Property<bool> BackupSettings::*flag;
};

class LoadSwitchTest : public SettingsFixture, public ::testing::WithParamInterface<SwitchCase> {
 protected:
  bool LoadedFrom(bool before, const std::string& value) {
    settings.*GetParam().flag = before;
    Load(std::string("[") + GetParam().section + "]\r\n" + GetParam().key + "=" + value + "\r\n");
    return settings.*GetParam().flag;
  }
};

TEST_P(LoadSwitchTest, TrueSetsIt) {
  EXPECT_TRUE(LoadedFrom(false, "True"));
  EXPECT_TRUE(LoadedFrom(true, "True"));
}

TEST_P(LoadSwitchTest, FalseClearsIt) {
  EXPECT_FALSE(LoadedFrom(true, "False"));
  EXPECT_FALSE(LoadedFrom(false, "False"));
}

TEST_P(LoadSwitchTest, AnythingElseLeavesIt) {
  for (const char* value : {"", "true", "FALSE", "1"}) {
    EXPECT_TRUE(LoadedFrom(true, value)) << value;
    EXPECT_FALSE(LoadedFrom(false, value)) << value;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Switches, LoadSwitchTest,
    ::testing::Values(SwitchCase{"Log", "Save", &BackupSettings::SaveLog},
                      SwitchCase{"Alert", "Show", &BackupSettings::ShowAlert},
                      SwitchCase{"Compress", "Auto", &BackupSettings::AutoCompress},
                      SwitchCase{"FTP", "Auto", &BackupSettings::AutoUpload},
                      SwitchCase{"Reports", "Send", &BackupSettings::AutoReport}),
    [](const auto& test) { return std::string(test.param.section) + test.param.key; });

// --- the mode

struct ModeCase {
  const char* incremental;
  const char* syncro;
  bool is_incremental;
};

class LoadModeTest : public SettingsFixture, public ::testing::WithParamInterface<ModeCase> {};

TEST_P(LoadModeTest, OnlyTheIncrementalKeyDecides) {
  Load(std::string("[Backup]\r\nIncremental=") + GetParam().incremental +
       "\r\n[Method]\r\nSyncro=" + GetParam().syncro + "\r\n");
  EXPECT_EQ(settings.BackupMode.Incremental, GetParam().is_incremental);
  EXPECT_EQ(settings.BackupMode.Complete, !GetParam().is_incremental);
  EXPECT_FALSE(settings.BackupMode.Sync);
  EXPECT_EQ(settings.IncrementalFlag, GetParam().is_incremental);
  EXPECT_FALSE(settings.SyncroFlag);
}

INSTANTIATE_TEST_SUITE_P(Keys, LoadModeTest,
                         ::testing::Values(ModeCase{"True", "True", true},
                                           ModeCase{"True", "False", true},
                                           ModeCase{"True", "", true},
                                           ModeCase{"False", "True", false},
                                           ModeCase{"False", "False", false},
                                           ModeCase{"", "True", false}, ModeCase{"", "", false}));

// As no key sets it, it can only stay as it was.
TEST_F(LoadSettingsTest, ASyncFlagThatNoKeyClearsChoosesItsMode) {
  settings.SyncroFlag = true;
  Load("[Method]\r\nSyncro=True\r\n");
  EXPECT_TRUE(settings.BackupMode.Sync);
  EXPECT_FALSE(settings.BackupMode.Complete);
}

// --- the list

TEST_F(LoadSettingsTest, EntriesAreAppendedInOrder) {
  Load("[Entries]\r\n1=C:\\b.txt\r\n0=C:\\a.txt\r\n2=C:\\Data\\*+++++*\r\n");
  EXPECT_THAT(settings.Entries.Rows(), ElementsAre("C:\\a.txt", "C:\\b.txt", "C:\\Data\\*+++++*"));
}

TEST_F(LoadSettingsTest, EntriesEndAtTheFirstGap) {
  Load("[Entries]\r\n0=C:\\a.txt\r\n1=C:\\b.txt\r\n3=C:\\d.txt\r\n");
  EXPECT_THAT(settings.Entries.Rows(), ElementsAre("C:\\a.txt", "C:\\b.txt"));
}

TEST_F(LoadSettingsTest, AnEmptyEntryIsAGap) {
  Load("[Entries]\r\n0=C:\\a.txt\r\n1=\r\n2=C:\\c.txt\r\n");
  EXPECT_THAT(settings.Entries.Rows(), ElementsAre("C:\\a.txt"));
}

TEST_F(LoadSettingsTest, EntriesEndWhereTheCounterDoes) {
  std::string file = "[Entries]\r\n-32768=C:\\below.txt\r\n";
  for (int index = 0; index <= 32768; ++index) file += std::to_string(index) + "=C:\\a.txt\r\n";
  Load(file);
  EXPECT_EQ(settings.Entries.Count(), 32768U);
  EXPECT_EQ(profiles.reads.back(), "Entries/32767");
}

TEST_F(LoadSettingsTest, AnItemOf254CharactersComesBackWhole) {
  const std::string item = "C:\\" + std::string(251, 'x');
  Load("[Entries]\r\n0=" + item + "\r\n");
  EXPECT_THAT(settings.Entries.Rows(), ElementsAre(item));
}

TEST_F(LoadSettingsTest, AnItemOf255CharactersComesBackCut) {
  const std::string item = "C:\\" + std::string(252, 'x');
  Load("[Entries]\r\n0=" + item + "\r\n");
  EXPECT_THAT(settings.Entries.Rows(), ElementsAre(item.substr(0, 254)));
}

TEST_F(LoadSettingsTest, ALoadShowsNoBoxAndDoesNotTouchTheFile) {
  Load("[When]\r\nDays=many\r\nAlwaysAt=xx\r\n");
  EXPECT_EQ(File(), "[When]\r\nDays=many\r\nAlwaysAt=xx\r\n");
  EXPECT_TRUE(machine.boxes.Shown().empty());
}

}  // namespace
}  // namespace tarnvale::testing
