// The log byte for byte, as runs write it.
#include "core/backup_log.h"

#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::IsEmpty;

constexpr const char* kBegin = "Tarnvale Started Backup At 3/14/2008 11:00:00 AM\r\n\r\n";

std::string End(int items) {
  return "\r\nSuccess >> Copied " + std::to_string(items) +
         " Files, 11:00 To 11:00 On 3/14/2008.\r\n";
}

class BackupLogTest : public RunFixture {
 protected:
  BackupLogTest() { engine.settings.SaveLog = true; }

  bool HasLog() const { return machine.files.Exists("C:\\Data\\Backup Log.txt"); }
};

TEST_F(BackupLogTest, ACompleteRunOfTwoFilesHasFourLines) {
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  Run();
  EXPECT_EQ(Log(),
            "Tarnvale Started Backup At 3/14/2008 11:00:00 AM\r\n"
            "\r\n"
            "C:\\Src\\a.txt -> C:\\Backup\\a.txt, Backup Status: OK!"
            "C:\\Src\\b.txt -> C:\\Backup\\b.txt, Backup Status: OK!\r\n"
            "Success >> Copied 2 Files, 11:00 To 11:00 On 3/14/2008.\r\n");
}

TEST_F(BackupLogTest, AnIncrementalRunOfTwoFilesHasSixLines) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  Run();
  EXPECT_EQ(Log(),
            "Tarnvale Started Backup At 3/14/2008 11:00:00 AM\r\n"
            "\r\n"
            "C:\\Src\\a.txt -> C:\\Backup\\a.txt, Backup Status: >> Ok\r\n"
            "C:\\Src\\b.txt -> C:\\Backup\\b.txt, Backup Status: >> Ok\r\n"
            "\r\n"
            "Success >> Copied 2 Files, 11:00 To 11:00 On 3/14/2008.\r\n");
}

TEST_F(BackupLogTest, AnIncrementalRunHasNoLineOfAFileThatItPassedOver) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  machine.files.SetAttributes("C:\\Src\\a.txt", 0);
  Run();
  EXPECT_EQ(Log(),
            kBegin + std::string("C:\\Src\\b.txt -> C:\\Backup\\b.txt, Backup Status: >> Ok\r\n") +
                End(2));
}

TEST_F(BackupLogTest, ARunOfAnEmptyListHasOnlyTheFrame) {
  Run();
  EXPECT_EQ(Log(), kBegin + End(0));
}

TEST_F(BackupLogTest, FoldersStandOnTheSameLineAsFiles) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.MakeFolder("C:\\Src\\Work");
  Add("C:\\Src\\Work\\*+++++*");
  machine.files.MakeFolder("C:\\Src\\Play");
  Add("C:\\Src\\Play\\*+++++*");
  Run();
  EXPECT_EQ(Log(), kBegin +
                       std::string("C:\\Src\\a.txt -> C:\\Backup\\a.txt, Backup Status: OK!"
                                   "C:\\Src\\Work -> C:\\Backup\\Work, Backup Status: OK!"
                                   "C:\\Src\\Play -> C:\\Backup\\Play, Backup Status: OK!") +
                       End(3));
}

TEST_F(BackupLogTest, TheFolderLineOfASyncNamesTheDestinationAlone) {
  engine.settings.BackupMode.Sync = true;
  machine.files.MakeFolder("C:\\Src\\Work");
  Add("C:\\Src\\Work\\*+++++*");
  Run();
  EXPECT_EQ(Log(),
            kBegin + std::string("C:\\Src\\Work -> C:\\Backup\\, Backup Status: OK!") + End(1));
}

TEST_F(BackupLogTest, AFolderOfManyFilesCountsAsOne) {
  for (const char* name : {"1", "2", "3"}) {
    machine.files.Write(std::string("C:\\Src\\Work\\") + name, "x");
  }
  Add("C:\\Src\\Work\\*+++++*");
  Run();
  EXPECT_THAT(Log(), ::testing::EndsWith(End(1)));
}

TEST_F(BackupLogTest, LineEndsInANameForgeNoLines) {
  AddFile("C:\\Src\\a\r\nSuccess - Copied\x1B[2J", "a");
  machine.files.MakeFolder("C:\\Src\\b\nc");
  Add("C:\\Src\\b\nc\\*+++++*");
  Run();
  EXPECT_EQ(Log(), kBegin +
                       std::string("C:\\Src\\a??Success - Copied?[2J -> "
                                   "C:\\Backup\\a??Success - Copied?[2J, Backup Status: OK!"
                                   "C:\\Src\\b?c -> C:\\Backup\\b?c, Backup Status: OK!") +
                       End(2));
}

TEST_F(BackupLogTest, AFailedCopyIsLoggedAsOk) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.FailNext("CopyWhole", 61);
  Run();
  EXPECT_FALSE(machine.files.Exists("C:\\Backup\\a.txt"));
  EXPECT_EQ(Log(), kBegin + std::string("C:\\Src\\a.txt -> C:\\Backup\\a.txt, Backup Status: OK!") +
                       End(1));
}

TEST_F(BackupLogTest, AFailedIncrementalCopyGetsItsSecondHalf) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.FailNext("CopyWhole", 61);
  machine.files.FailOn("SetAttributes", "C:\\Src\\a.txt", 75);
  Run();
  EXPECT_EQ(Log(),
            kBegin + std::string("C:\\Src\\a.txt -> C:\\Backup\\a.txt, Backup Status: >> Ok\r\n") +
                End(1));
}

TEST_F(BackupLogTest, AFailedFolderIsLoggedAsOk) {
  machine.files.FailAlways("CopyTree", 70);
  Add("C:\\Src\\Gone\\*+++++*");
  Run();
  EXPECT_EQ(Log(),
            kBegin + std::string("C:\\Src\\Gone -> C:\\Backup\\Gone, Backup Status: OK!") + End(1));
}

TEST_F(BackupLogTest, AFileTakenForAFolderHasAFolderLine) {
  AddFile("C:\\Src\\c+++++.txt", "c");
  Run();
  EXPECT_EQ(Log(), kBegin +
                       std::string("C:\\Src\\c+++++.txt -> C:\\Backup\\c+++++.txt, "
                                   "Backup Status: OK!") +
                       End(1));
}

TEST_F(BackupLogTest, RoundsBeyondTheTableLogNothing) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.SetAttributes("C:\\Src\\a.txt", 1);
  Run();
  EXPECT_EQ(Log(),
            kBegin + std::string("C:\\Src\\a.txt -> C:\\Backup\\a.txt, Backup Status: >> Ok\r\n") +
                End(1));
}

TEST_F(BackupLogTest, TheEndGivesTheTimeOfTheStartAndOfTheEnd) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.loop.OnYield(1, [this] { machine.clock.Move(14h + 5min); });
  Run();
  EXPECT_THAT(Log(), ::testing::EndsWith(
                         "\r\nSuccess >> Copied 1 Files, 11:00 To 01:05 On 3/14/2008.\r\n"));
}

TEST_F(BackupLogTest, EachRunMakesTheLogAnew) {
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  engine.settings.Entries.Clear();
  Run();
  EXPECT_EQ(Log(), kBegin + End(0));
}

TEST_F(BackupLogTest, WithTheLogOffTheOldOneStands) {
  machine.files.Write("C:\\Data\\Backup Log.txt", "old");
  engine.settings.SaveLog = false;
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  EXPECT_EQ(Log(), "old");
}

TEST_F(BackupLogTest, ABusyEngineLeavesTheOldLog) {
  machine.files.Write("C:\\Data\\Backup Log.txt", "old");
  engine.run.EngineFree = "0";
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  EXPECT_EQ(Log(), "old");
}

TEST_F(BackupLogTest, TheLogIsHeldOpenForTheCopiesAndClosedBeforeTheStages) {
  AddFile("C:\\Src\\a.txt", "a");
  bool open_in_copies = false;
  bool open_in_stages = true;
  machine.loop.OnYield(2, [&] { open_in_copies = machine.open_files.IsOpen(1); });
  engine.settings.AutoCompress = true;
  engine.stages.Compress = [&] { open_in_stages = machine.open_files.IsOpen(1); };
  Run();
  EXPECT_TRUE(open_in_copies);
  EXPECT_FALSE(open_in_stages);
}

TEST_F(BackupLogTest, AFileThatHoldsNumberOneGetsTheLinesAndIsClosed) {
  machine.open_files.OpenOutput(1, "C:\\other.txt");
  machine.open_files.Write(1, "mine: ");
  Run();
  EXPECT_FALSE(HasLog());
  EXPECT_EQ(machine.files.Content("C:\\other.txt"), "mine: " + (kBegin + End(0)));
  EXPECT_FALSE(machine.open_files.IsOpen(1));
}

TEST_F(BackupLogTest, AFileThatIsReadUnderNumberOneStaysAsItIs) {
  machine.files.Write("C:\\other.txt", "mine");
  machine.open_files.OpenInput(1, "C:\\other.txt");
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  EXPECT_FALSE(HasLog());
  EXPECT_EQ(machine.files.Content("C:\\other.txt"), "mine");
  EXPECT_TRUE(machine.files.Exists("C:\\Backup\\a.txt"));
}

TEST_F(BackupLogTest, ClosingAllFilesDuringARunEndsTheLog) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.loop.OnYield(1, [this] { machine.open_files.CloseAll(); });
  Run();
  EXPECT_EQ(Log(), kBegin);
  EXPECT_TRUE(machine.files.Exists("C:\\Backup\\a.txt"));
}

TEST_F(BackupLogTest, AMissingDataFolderIsPassedOver) {
  engine.settings.DataFolder = "Z:\\Gone";
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  EXPECT_TRUE(machine.files.Exists("C:\\Backup\\a.txt"));
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

TEST_F(BackupLogTest, AFullMediumLosesLinesOneByOne) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.open_files.FailNext("Write", 61);
  Run();
  EXPECT_EQ(Log(), "\r\nC:\\Src\\a.txt -> C:\\Backup\\a.txt, Backup Status: OK!" + End(1));
}

TEST_F(BackupLogTest, IsInTheSystemsCodePage) {
  machine.open_files.UseWesternCodePage();
  AddFile("C:\\Src\\Gr\xC3\xBC\xC3\x9F", "a");
  Run();
  EXPECT_EQ(Log(),
            kBegin +
                std::string("C:\\Src\\Gr\xFC\xDF -> C:\\Backup\\Gr\xFC\xDF, Backup Status: OK!") +
                End(1));
}

TEST_F(BackupLogTest, IsUtf8BehindAMarkFromTheFirstNameThatTheCodePageLacks) {
  machine.open_files.UseWesternCodePage();
  AddFile("C:\\Src\\\xC3\xBC", "a");
  AddFile("C:\\Src\\\xD0\x96", "b");
  AddFile("C:\\Src\\\xC3\xA9", "c");
  Run();
  EXPECT_EQ(Log(), std::string("\xEF\xBB\xBF") + kBegin +
                       "C:\\Src\\\xC3\xBC -> C:\\Backup\\\xC3\xBC, Backup Status: OK!"
                       "C:\\Src\\\xD0\x96 -> C:\\Backup\\\xD0\x96, Backup Status: OK!"
                       "C:\\Src\\\xC3\xA9 -> C:\\Backup\\\xC3\xA9, Backup Status: OK!" +
                       End(3));
}

TEST_F(BackupLogTest, ANameThatTheCodePageLacksOpensNoLogThatWasClosed) {
  machine.open_files.UseWesternCodePage();
  AddFile("C:\\Src\\\xD0\x96", "a");
  machine.loop.OnYield(1, [this] { machine.open_files.CloseAll(); });
  Run();
  EXPECT_EQ(Log(), kBegin);
  EXPECT_TRUE(machine.files.Exists("C:\\Backup\\\xD0\x96"));
}

}  // namespace
}  // namespace tarnvale::testing
