// What the run page shows, and what a handler sees at the run's yields.
#include "core/backup_run.h"
#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

constexpr int kMiB = 1 << 20;

class RunCaptionsTest : public RunFixture {
 protected:
  // Looks at the run page at the n-th yield from now.
  void AtYield(int n) {
    machine.loop.OnYield(n, [this] {
      const RunState& run = engine.run;
      seen.push_back(run.SourceCaption.Get() + "|" + run.TargetCaption.Get() + "|" +
                     run.StatusCaption.Get() + "|" + std::to_string(run.CopyBar) + "|" +
                     std::to_string(run.FileBar));
    });
  }

  std::vector<std::string> seen;
};

// --- the end

TEST_F(RunCaptionsTest, AnEndedCompleteRun) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.loop.OnYield(1, [this] { machine.clock.Move(65min); });
  Run();
  EXPECT_EQ(engine.run.SourceCaption.Get(), "Copying To Backup Location Has Been Done >> Finished");
  EXPECT_EQ(engine.run.TargetCaption.Get(),
            "Transfering Of Files To Backup Location Has Been Done >> Finished");
  EXPECT_EQ(Status(), "Success >> Copied 1 Items, 11:00 To 12:05 On 3/14/2008.");
  EXPECT_EQ(engine.run.CopyBar, 100);
  EXPECT_EQ(engine.run.FileBar, 100);
}

TEST_F(RunCaptionsTest, AnEndedIncrementalRunSaysTheSame) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  Run();
  EXPECT_EQ(engine.run.SourceCaption.Get(), "Copying To Backup Location Has Been Done >> Finished");
  EXPECT_EQ(Status(), "Success >> Copied 2 Items, 11:00 To 11:00 On 3/14/2008.");
}

TEST_F(RunCaptionsTest, ARunOfABusyEngineEndsWithFullBarsToo) {
  engine.run.EngineFree = "0";
  Run();
  EXPECT_EQ(engine.run.CopyBar, 100);
  EXPECT_EQ(engine.run.FileBar, 100);
}

TEST_F(RunCaptionsTest, AnEndedSyncRun) {
  engine.settings.BackupMode.Sync = true;
  machine.files.MakeFolder("C:\\Src\\Work");
  Add("C:\\Src\\Work\\*+++++*");
  Run();
  EXPECT_EQ(engine.run.SourceCaption.Get(), "Folder Has Been Fully Synchronized >> Finished ");
  EXPECT_EQ(engine.run.TargetCaption.Get(), "Folder Has Been Fully Synchronized >> Finished ");
  EXPECT_EQ(Status(), "Success >> Synchronized 2 Folders, 11:00 To 11:00 On 3/14/2008.");
  EXPECT_EQ(engine.run.CopyBar, 100);
}

TEST_F(RunCaptionsTest, AnEmptyListCopiesZeroItems) {
  Run();
  EXPECT_EQ(Status(), "Success >> Copied 0 Items, 11:00 To 11:00 On 3/14/2008.");
}

TEST_F(RunCaptionsTest, ARunThatPassedOverTheCopyShowsTheZeroTimeAndDate) {
  engine.run.EngineFree = "0";
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  EXPECT_EQ(engine.run.SourceCaption.Get(), "Copying To Backup Location Has Been Done >> Finished");
  EXPECT_EQ(Status(), "Success >> Copied 1 Items, 00:00 To 11:00 On 12/30/1899.");
  EXPECT_EQ(engine.run.CopyBar, 100);
}

TEST_F(RunCaptionsTest, ThePassedOverCopyForgetsTheStartOfTheRunBefore) {
  Run();
  engine.run.EngineFree = "0";
  Run();
  EXPECT_EQ(Status(), "Success >> Copied 0 Items, 00:00 To 11:00 On 12/30/1899.");
}

TEST_F(RunCaptionsTest, SuccessStandsThoughEveryCopyFailed) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.FailAlways("CopyWhole", 61);
  Run();
  EXPECT_EQ(Status(), "Success >> Copied 1 Items, 11:00 To 11:00 On 3/14/2008.");
}

// --- the file loop

TEST_F(RunCaptionsTest, ACopiedFileAtItsTwoYields) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.ReportLength("C:\\Src\\a.txt", 3 * kMiB);
  AtYield(1);
  AtYield(2);
  Run();
  const std::string first = std::string(kNoRunYet) + "|" + kNoRunYet + "|" + kNoRunYet + "|0|104";
  EXPECT_THAT(seen, ElementsAre(first,
                                "C:\\Src\\a.txt|C:\\Backup\\a.txt|"
                                "File 0 Of 1, Total: 3.00 MB|25|104"));
}

TEST_F(RunCaptionsTest, ASecondFileBeginsWithTheBarsOfTheFirst) {
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  machine.random.Script({0, 0.25});
  AtYield(3);
  Run();
  EXPECT_THAT(seen, ElementsAre("C:\\Src\\a.txt|C:\\Backup\\a.txt|"
                                "File 0 Of 2, Total: 0.00 MB|50|56"));
}

TEST_F(RunCaptionsTest, AChangedFileInIncrementalModeLeavesTheBarAtFive) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.ReportLength("C:\\Src\\a.txt", 3 * kMiB);
  AtYield(2);
  Run();
  EXPECT_THAT(seen, ElementsAre("C:\\Src\\a.txt|C:\\Backup\\a.txt|"
                                "File 0 Of 1, Total: 3.00 MB|5|104"));
}

TEST_F(RunCaptionsTest, AnUnchangedFileIsShownAndCountsForNothing) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.ReportLength("C:\\Src\\a.txt", 3 * kMiB);
  machine.files.SetAttributes("C:\\Src\\a.txt", 0);
  AtYield(2);
  Run();
  EXPECT_THAT(seen, ElementsAre("C:\\Src\\a.txt|C:\\Backup\\a.txt|"
                                "File 0 Of 1, Total: 0.00 MB|5|104"));
}

TEST_F(RunCaptionsTest, AFileTakenForAFolderIsShownWithoutATotal) {
  AddFile("C:\\Src\\c+++++.txt", "c");
  AtYield(2);
  Run();
  EXPECT_THAT(seen, ElementsAre("C:\\Src\\c+++++.txt|C:\\Backup\\c+++++.txt|"
                                "File: 0 Out Of: 1|5|104"));
}

TEST_F(RunCaptionsTest, RoundsWithAnEmptyRowYieldOnceAndOthersTwice) {
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  // Row 0 twice, the empty row 1 once, rows 2 and 3 beyond the table twice, and
  // once for the medium.
  EXPECT_EQ(machine.loop.YieldCount(), 8);
}

TEST_F(RunCaptionsTest, RoundsBeyondTheTableShowWhatDoesNotReadTheRow) {
  AddFile("C:\\Src\\a.txt", "a");
  AtYield(5);
  AtYield(7);
  Run();
  EXPECT_THAT(seen, ElementsAre("C:\\Src\\a.txt|C:\\Backup\\a.txt|"
                                "File 2 Of 1, Total: 0.00 MB|25|104",
                                "C:\\Src\\a.txt|C:\\Backup\\a.txt|"
                                "File 3 Of 1, Total: 0.00 MB|25|104"));
}

TEST_F(RunCaptionsTest, RoundsBeyondTheTableLeaveTheBarAtFiveInIncrementalMode) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  AtYield(5);
  Run();
  EXPECT_THAT(seen, ElementsAre("C:\\Src\\a.txt|C:\\Backup\\a.txt|"
                                "File 2 Of 1, Total: 0.00 MB|5|104"));
}

TEST_F(RunCaptionsTest, TheCountInTheCaptionsIsReadLive) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.loop.OnYield(1, [this] { Add("C:\\Src\\b.txt"); });
  AtYield(2);
  Run();
  EXPECT_THAT(seen, ElementsAre("C:\\Src\\a.txt|C:\\Backup\\a.txt|"
                                "File 0 Of 2, Total: 0.00 MB|25|104"));
}

TEST_F(RunCaptionsTest, TheItemAndItsMarkersAreSetBeforeTheFirstYield) {
  machine.files.MakeFolder("C:\\Src\\Work");
  Add("C:\\Src\\Work\\*+++++*");
  std::string item;
  std::string markers;
  machine.loop.OnYield(1, [&] {
    item = engine.run.ItemText;
    markers = engine.run.MarkerCount;
  });
  Run();
  EXPECT_EQ(item, "C:\\Src\\Work\\*+++++*");
  EXPECT_EQ(markers, "5");
}

// --- the second bar

struct ShowCase {
  double random;
  int bar;
};

class FileBarTest : public RunCaptionsTest, public ::testing::WithParamInterface<ShowCase> {};

TEST_P(FileBarTest, ShowsTheWholePartOfARandomValue) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.random.Script({GetParam().random});
  int bar = -1;
  machine.loop.OnYield(1, [&] { bar = engine.run.FileBar; });
  Run();
  EXPECT_EQ(bar, GetParam().bar);
}

INSTANTIATE_TEST_SUITE_P(Values, FileBarTest,
                         ::testing::Values(ShowCase{0, 8}, ShowCase{0.005, 8}, ShowCase{0.0052, 9},
                                           ShowCase{0.5, 104}, ShowCase{0.999999, 200}));

// --- totals

TEST_F(RunCaptionsTest, TheTotalGrowsFromFileToFile) {
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  machine.files.ReportLength("C:\\Src\\a.txt", 1024 * kMiB);
  machine.files.ReportLength("C:\\Src\\b.txt", 512 * 1024);
  AtYield(4);
  Run();
  EXPECT_THAT(seen, ElementsAre("C:\\Src\\b.txt|C:\\Backup\\b.txt|"
                                "File 1 Of 2, Total: 1,024.50 MB|25|104"));
}

TEST_F(RunCaptionsTest, ASumBeyond32BitsIsPassedOverAndTheTotalStays) {
  for (const char* file : {"C:\\Src\\a.txt", "C:\\Src\\b.txt", "C:\\Src\\c.txt"})
    AddFile(file, "x");
  machine.files.ReportLength("C:\\Src\\a.txt", 1536LL * kMiB);
  machine.files.ReportLength("C:\\Src\\b.txt", 1536LL * kMiB);
  machine.files.ReportLength("C:\\Src\\c.txt", kMiB);
  AtYield(4);
  AtYield(6);
  Run();
  EXPECT_THAT(seen, ElementsAre("C:\\Src\\b.txt|C:\\Backup\\b.txt|"
                                "File 1 Of 3, Total: 1,536.00 MB|25|104",
                                "C:\\Src\\c.txt|C:\\Backup\\c.txt|"
                                "File 2 Of 3, Total: 1,537.00 MB|25|104"));
  EXPECT_TRUE(machine.files.Exists("C:\\Backup\\b.txt"));
}

TEST_F(RunCaptionsTest, TheLastByteBelow2GiBCountsAndTheNextDoesNot) {
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  machine.files.ReportLength("C:\\Src\\a.txt", 2147483647);
  engine.settings.AutoReport = true;
  std::int32_t total = 0;
  engine.stages.SendReport = [&](const RunFacts& facts) { total = facts.total_bytes; };
  Run();
  EXPECT_EQ(total, 2147483647);
}

TEST_F(RunCaptionsTest, AFileBeyond2GiBIsCopiedAndCountsForNothing) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.ReportLength("C:\\Src\\a.txt", 5LL << 30);
  AtYield(2);
  Run();
  EXPECT_THAT(seen, ElementsAre("C:\\Src\\a.txt|C:\\Backup\\a.txt|"
                                "File 0 Of 1, Total: 0.00 MB|25|104"));
  EXPECT_TRUE(machine.files.Exists("C:\\Backup\\a.txt"));
}

TEST_F(RunCaptionsTest, TheLengthIsThatOfTheMomentOfTheCopy) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.loop.OnYield(1, [this] { machine.files.ReportLength("C:\\Src\\a.txt", 2 * kMiB); });
  AtYield(2);
  Run();
  EXPECT_THAT(seen, ElementsAre("C:\\Src\\a.txt|C:\\Backup\\a.txt|"
                                "File 0 Of 1, Total: 2.00 MB|25|104"));
}

// --- the folder loop

TEST_F(RunCaptionsTest, AFolderIsShownWhileItIsCopied) {
  machine.files.Write("C:\\Src\\Work\\a.txt", "a");
  Add("C:\\Src\\Work\\*+++++*");
  // Six yields of the file loop: two empty rows, two rounds beyond the table.
  AtYield(7);
  Run();
  EXPECT_THAT(seen, ElementsAre("C:\\Src\\Work|C:\\Backup\\Work|File: 0 Out Of: 1|75|100"));
}

TEST_F(RunCaptionsTest, ASyncShowsTheCopyBarAtSixtyAndTheItemWithoutItsMarker) {
  engine.settings.BackupMode.Sync = true;
  machine.files.Write("C:\\Src\\Work\\a.txt", "a");
  Add("C:\\Src\\Work\\*+++++*");
  std::string item;
  machine.loop.OnYield(7, [&] { item = engine.run.ItemText; });
  AtYield(7);
  Run();
  EXPECT_EQ(item, "C:\\Src\\Work");
  EXPECT_THAT(seen, ElementsAre(std::string(kNoRunYet) + "|" + kNoRunYet +
                                "|File 3 Of 1, Total: 0.00 MB|60|100"));
}

// --- preparation

TEST_F(RunCaptionsTest, TheRunPageIsShownAndFiveOthersAreHidden) {
  WatchScreens();
  Run();
  EXPECT_THAT(actions, ElementsAre("show progress", "hide storage", "hide list", "hide schedule",
                                   "hide general", "hide advanced"));
}

TEST_F(RunCaptionsTest, TheProgressWindowIsResetBeforeThePageAndFollowsAfterIt) {
  WatchScreens();
  engine.stages.ResetProgressWindow = [this] { actions.push_back("reset"); };
  engine.stages.FollowCopy = [this] { actions.push_back("follow"); };
  Run();
  ASSERT_EQ(actions.size(), 8U);
  EXPECT_EQ(actions.front(), "reset");
  EXPECT_EQ(actions.back(), "follow");
}

TEST_F(RunCaptionsTest, ABusyEngineSwitchesNoPage) {
  WatchScreens();
  engine.run.EngineFree = "0";
  Run();
  EXPECT_TRUE(actions.empty());
}

TEST_F(RunCaptionsTest, ThePointerIsBusyForTheCopyAndNormalForTheStages) {
  AddFile("C:\\Src\\a.txt", "a");
  engine.settings.AutoCompress = true;
  PointerShape in_copy = PointerShape::kDefault;
  PointerShape in_stage = PointerShape::kHourglass;
  machine.loop.OnYield(1, [&] { in_copy = machine.desktop.Pointer; });
  engine.stages.Compress = [&] { in_stage = machine.desktop.Pointer; };
  Run();
  EXPECT_EQ(in_copy, PointerShape::kHourglass);
  EXPECT_EQ(in_stage, PointerShape::kDefault);
}

TEST_F(RunCaptionsTest, TheBarsBeginAtZeroAgain) {
  Run();
  std::vector<int> bars;
  engine.run.CopyBar.Changed.Listen([&] { bars.push_back(engine.run.CopyBar); });
  Run();
  ASSERT_FALSE(bars.empty());
  EXPECT_EQ(bars.front(), 0);
  EXPECT_EQ(bars.back(), 100);
}

}  // namespace
}  // namespace tarnvale::testing
