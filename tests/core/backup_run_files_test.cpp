// The run's file loop: what is copied where.
#include "core/backup_run.h"
#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RunFilesLoopTest : public RunFixture {
 protected:
  // The names of the files that the last run copied one by one, in order.
  std::vector<std::string> Copied() const {
    std::vector<std::string> names;
    for (const std::string& call : machine.files.Calls()) {
      if (call.rfind("CopyWhole ", 0) != 0) continue;
      names.push_back(call.substr(call.rfind('\\') + 1));
    }
    return names;
  }
};

// --- complete mode

TEST_F(RunFilesLoopTest, CompleteModeCopiesEveryFileAndLeavesItsAttributes) {
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  machine.files.SetAttributes("C:\\Src\\b.txt", 0);
  machine.files.ClearCalls();
  Run();
  EXPECT_EQ(machine.files.Content("C:\\Backup\\a.txt"), "a");
  EXPECT_EQ(machine.files.Content("C:\\Backup\\b.txt"), "b");
  EXPECT_EQ(machine.files.CopiedWith("C:\\Backup\\b.txt"), Rights::kSource);
  EXPECT_EQ(machine.files.CallsOf("SetAttributes"), 0);
}

TEST_F(RunFilesLoopTest, ACopyReplacesWhatIsThere) {
  AddFile("C:\\Src\\a.txt", "new");
  machine.files.Write("C:\\Backup\\a.txt", "old and longer");
  Run();
  EXPECT_EQ(machine.files.Content("C:\\Backup\\a.txt"), "new");
}

TEST_F(RunFilesLoopTest, TheDestinationGetsItsBackslashOnce) {
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  EXPECT_EQ(engine.run.RunDestination.Get(), "C:\\Backup\\");
  Run();
  EXPECT_EQ(engine.run.RunDestination.Get(), "C:\\Backup\\");
}

TEST_F(RunFilesLoopTest, AnEmptyDestinationIsTheRootOfTheDrive) {
  engine.run.RunDestination = "";
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  EXPECT_EQ(engine.run.RunDestination.Get(), "\\");
  EXPECT_EQ(machine.files.Content("C:\\a.txt"), "a");
}

TEST_F(RunFilesLoopTest, WhatFollowsAChangeOfTheDestinationGoesToTheNewOne) {
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  machine.files.MakeFolder("C:\\Other");
  machine.loop.OnYield(2, [&] { engine.run.RunDestination = "C:\\Other\\"; });
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Backup"), ElementsAre("a.txt"));
  EXPECT_THAT(machine.files.Names("C:\\Other"), ElementsAre("b.txt"));
}

TEST_F(RunFilesLoopTest, TheLocationOfTheSettingsIsNotRead) {
  engine.settings.DestinationDir = "C:\\Elsewhere";
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  EXPECT_TRUE(machine.files.Exists("C:\\Backup\\a.txt"));
}

// --- rows and entries

TEST_F(RunFilesLoopTest, AFileBehindOneFileAndAWholeFolderIsPassedOver) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.Write("C:\\Src\\Folder\\f.txt", "f");
  Add("C:\\Src\\Folder\\*+++++*");
  AddFile("C:\\Src\\b.txt", "b");
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Backup"), ElementsAre("a.txt", "Folder"));
  EXPECT_EQ(machine.files.Content("C:\\Backup\\Folder\\f.txt"), "f");
}

TEST_F(RunFilesLoopTest, AFileBehindTwoFilesAndAWholeFolderIsCopied) {
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  machine.files.MakeFolder("C:\\Src\\Folder");
  Add("C:\\Src\\Folder\\*+++++*");
  AddFile("C:\\Src\\c.txt", "c");
  Run();
  EXPECT_THAT(Copied(), ElementsAre("a.txt", "b.txt", "c.txt"));
}

TEST_F(RunFilesLoopTest, AFileBehindAWholeFolderIsCopied) {
  machine.files.MakeFolder("C:\\Src\\Folder");
  Add("C:\\Src\\Folder\\*+++++*");
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  EXPECT_THAT(Copied(), ElementsAre("a.txt"));
}

TEST_F(RunFilesLoopTest, AFoldersContentsAreCutAtThreeRowsBeyondTheList) {
  for (const char* name : {"1", "2", "3", "4", "5", "6"}) {
    machine.files.Write(std::string("C:\\Many\\") + name, "x");
  }
  Add("C:\\Many\\*.*");
  Run();
  EXPECT_THAT(Copied(), ElementsAre("1", "2", "3", "4"));
}

TEST_F(RunFilesLoopTest, AFoldersContentsAreCopiedWithoutItsFolders) {
  machine.files.Write("C:\\Few\\a.txt", "a");
  machine.files.Write("C:\\Few\\Sub\\b.txt", "b");
  Add("C:\\Few\\*.*");
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Backup"), ElementsAre("a.txt"));
}

TEST_F(RunFilesLoopTest, AFoldersContentsBehindOneFileTakeItsPlace) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.Write("C:\\Few\\f.txt", "f");
  Add("C:\\Few\\*.*");
  Run();
  EXPECT_THAT(Copied(), ElementsAre("f.txt"));
}

TEST_F(RunFilesLoopTest, AMissingFileIsPassedOverForTheNext) {
  Add("C:\\Src\\gone.txt");
  AddFile("C:\\Src\\b.txt", "b");
  Run();
  EXPECT_THAT(Copied(), ElementsAre("b.txt"));
}

TEST_F(RunFilesLoopTest, AFolderThatCannotBeListedShowsTheOneBoxOfARun) {
  Add("C:\\Few\\*.*");
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.FailNext("List", 75);
  machine.boxes.Expect("Error:\n\n75:Path/File access error", BoxIcon::kStop, BoxAnswer::kOk);
  Run();
  EXPECT_THAT(Copied(), ElementsAre("a.txt"));
}

TEST_F(RunFilesLoopTest, AfterARunTheTableIsBackToItsSingleRow) {
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  Run();
  EXPECT_EQ(engine.run.Files.UpperBound(), 0U);
  EXPECT_EQ(engine.run.Files.Row(0), RunFile{});
  machine.files.ClearCalls();
  Run();
  EXPECT_THAT(Copied(), ElementsAre("a.txt", "b.txt"));
}

TEST_F(RunFilesLoopTest, TheWorkFieldsKeepWhatTheLastRoundsLeft) {
  machine.files.MakeFolder("C:\\Src\\Folder");
  Add("C:\\Src\\Folder\\*+++++*");
  Run();
  EXPECT_EQ(engine.run.RunIndex, 2);
  EXPECT_EQ(engine.run.ItemText.Get(), "");
  EXPECT_EQ(engine.run.MarkerCount.Get(), "0");
  EXPECT_EQ(engine.run.PathSepCount.Get(), "2");
  EXPECT_EQ(engine.run.DriveText.Get(), "0");
}

TEST_F(RunFilesLoopTest, TheLoopsEndWhereTheCounterDoes) {
  machine.files.Write("C:\\Src\\a.txt", "a");
  machine.files.Write("C:\\Src\\beyond.txt", "b");
  std::vector<std::string> items(32769, "C:\\Src\\a.txt");
  items.back() = "C:\\Src\\beyond.txt";
  engine.settings.Entries.Assign(items);
  Run();
  EXPECT_EQ(engine.run.RunIndex, 32767);
  EXPECT_EQ(machine.files.CallsOf("CopyWhole"), 32768);
  EXPECT_FALSE(machine.files.Exists("C:\\Backup\\beyond.txt"));
}

// --- names with plus signs

TEST_F(RunFilesLoopTest, AFileWithFivePlusSignsIsTakenForAFolder) {
  AddFile("C:\\Src\\c+++++.txt", "c");
  Run();
  EXPECT_THAT(Copied(), IsEmpty());
  EXPECT_THAT(machine.files.Calls(),
              ::testing::Contains("CopyTree C:\\Src\\c+++++.txt -> C:\\Backup\\c+++++.txt"));
  EXPECT_FALSE(machine.files.FileExists("C:\\Backup\\c+++++.txt"));
}

TEST_F(RunFilesLoopTest, PlusSignsOfThePathCountToo) {
  AddFile("C:\\S+++\\c++.txt", "c");
  Run();
  EXPECT_THAT(Copied(), IsEmpty());
}

TEST_F(RunFilesLoopTest, FilesWithFourOrSixPlusSignsAreCopied) {
  AddFile("C:\\Src\\a++++.txt", "a");
  AddFile("C:\\Src\\b++++++.txt", "b");
  Run();
  EXPECT_THAT(Copied(), ElementsAre("a++++.txt", "b++++++.txt"));
}

// --- incremental mode

struct AttributeCase {
  const char* fact;
  int before;
  bool copied;
  int after;
};

class IncrementalTest : public RunFilesLoopTest,
                        public ::testing::WithParamInterface<AttributeCase> {};

TEST_P(IncrementalTest, GoesByTheWholeAttributeValue) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.SetAttributes("C:\\Src\\a.txt", GetParam().before);
  Run();
  EXPECT_EQ(machine.files.Exists("C:\\Backup\\a.txt"), GetParam().copied);
  EXPECT_EQ(machine.files.Attributes("C:\\Src\\a.txt"), GetParam().after);
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Attributes, IncrementalTest,
    ::testing::Values(AttributeCase{"None", 0, false, 0}, AttributeCase{"Archive", 32, true, 0},
                      AttributeCase{"ArchiveReadOnly", 33, true, 1},
                      AttributeCase{"ArchiveHidden", 34, true, 2},
                      // 1 - 32 and 2 - 32 are no attributes: the change fails and passes.
                      AttributeCase{"ReadOnly", 1, true, 1}, AttributeCase{"Hidden", 2, true, 2}),
    [](const auto& test) { return std::string(test.param.fact); });

TEST_F(RunFilesLoopTest, ThirtyTwoIsTakenAwayThoughTheArchiveBitIsNotThere) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.SetAttributes("C:\\Src\\a.txt", 1);
  Run();
  EXPECT_THAT(machine.files.Calls(), ::testing::Contains("SetAttributes C:\\Src\\a.txt -> -31"));
}

TEST_F(RunFilesLoopTest, TheNextIncrementalRunPassesOverWhatTheLastOneCopied) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  machine.files.ClearCalls();
  Run();
  EXPECT_THAT(Copied(), IsEmpty());
  machine.files.Write("C:\\Src\\a.txt", "changed");
  Run();
  EXPECT_EQ(machine.files.Content("C:\\Backup\\a.txt"), "changed");
}

TEST_F(RunFilesLoopTest, AFailedCopyLosesTheArchiveBitAllTheSame) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.FailNext("CopyWhole", 61);
  Run();
  EXPECT_EQ(machine.files.Attributes("C:\\Src\\a.txt"), 0);
}

TEST_F(RunFilesLoopTest, AFileThatTheMediumHasNoRoomForKeepsItsArchiveBit) {
  engine.settings.BackupMode.Incremental = true;
  machine.files.AddDrive("W");
  machine.files.DistinguishCase("W");
  AddFile("W:\\Makefile", "capital");
  AddFile("W:\\makefile", "small");
  Run();
  EXPECT_EQ(machine.files.Content("C:\\Backup\\Makefile"), "capital");
  EXPECT_EQ(machine.files.Attributes("W:\\Makefile"), 0);
  EXPECT_EQ(machine.files.Attributes("W:\\makefile"), attribute::kArchive);
}

TEST_F(RunFilesLoopTest, AnAttributeValueAbove255KeepsThatOfTheRowBefore) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  machine.files.Find("C:\\Src\\b.txt")->flags = 256;
  Run();
  EXPECT_THAT(Copied(), ElementsAre("a.txt", "b.txt"));
  machine.files.SetAttributes("C:\\Src\\a.txt", 0);
  machine.files.Find("C:\\Src\\b.txt")->flags = 256;
  machine.files.ClearCalls();
  Run();
  EXPECT_THAT(Copied(), IsEmpty());
}

TEST_F(RunFilesLoopTest, ARunBeginsWithNoAttributeOfTheLastOne) {
  engine.settings.BackupMode.Incremental = true;
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  machine.files.ClearCalls();
  machine.files.FailAlways("Attributes", 75);
  Run();
  EXPECT_THAT(Copied(), IsEmpty());
}

TEST_F(RunFilesLoopTest, TheRunGoesByTheFlagAndNotByTheRadio) {
  engine.settings.BackupMode.Incremental = true;
  engine.settings.IncrementalFlag = false;
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.SetAttributes("C:\\Src\\a.txt", 0);
  Run();
  EXPECT_THAT(Copied(), ElementsAre("a.txt"));
}

TEST_F(RunFilesLoopTest, ASingleFileInSyncModeIsCopiedAsInCompleteMode) {
  engine.settings.BackupMode.Sync = true;
  AddFile("C:\\Src\\a.txt", "old");
  machine.files.SetAttributes("C:\\Src\\a.txt", 0);
  machine.files.Write("C:\\Backup\\a.txt", "newer");
  Run();
  EXPECT_EQ(machine.files.Content("C:\\Backup\\a.txt"), "old");
  EXPECT_EQ(machine.files.Content("C:\\Src\\a.txt"), "old");
}

// --- the gate

TEST_F(RunFilesLoopTest, ABusyEngineCopiesNothing) {
  engine.run.EngineFree = "0";
  AddFile("C:\\Src\\a.txt", "a");
  Run();
  EXPECT_THAT(machine.files.Calls(), IsEmpty());
  EXPECT_EQ(engine.run.RunDestination.Get(), "C:\\Backup");
}

TEST_F(RunFilesLoopTest, TheGateComparesNumbersAndAFailedTestCountsAsTrue) {
  AddFile("C:\\Src\\a.txt", "a");
  for (const auto& [text, copies] :
       {std::pair{"1", 1}, {" 1.0 ", 1}, {"2", 0}, {"-1", 0}, {"", 1}, {"yes", 1}}) {
    machine.files.ClearCalls();
    engine.run.EngineFree = text;
    Run();
    EXPECT_EQ(Copied().size(), static_cast<std::size_t>(copies)) << '"' << text << '"';
  }
}

// --- the medium

TEST_F(RunFilesLoopTest, TheMediumIsFlushedBeforeTheRunSaysThatItIsDone) {
  AddFile("C:\\Src\\a.txt", "a");
  int flushes_before = -1;
  engine.run.SourceCaption.Changed.Listen([&] {
    if (engine.run.SourceCaption.Get().ends_with("Finished")) {
      flushes_before = machine.files.CallsOf("BeginFlush");
    }
  });
  Run();
  EXPECT_EQ(flushes_before, 1);
  EXPECT_EQ(machine.files.Calls().back(), "BeginFlush C:\\Backup\\");
}

TEST_F(RunFilesLoopTest, CopiesAreNotedUntilTheirMediumHasThem) {
  AddFile("C:\\Src\\a.txt", "a");
  bool noted = false;
  machine.loop.OnYield(2, [&] { noted = machine.files.HasUnflushed("C:\\Backup\\"); });
  Run();
  EXPECT_TRUE(noted);
  EXPECT_FALSE(machine.files.HasUnflushed("C:\\Backup\\"));
}

TEST_F(RunFilesLoopTest, CopiesStayNotedWhoseFlushFails) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.FailNext("BeginFlush", kDeviceIoError);
  Run();
  EXPECT_TRUE(machine.files.HasUnflushed("C:\\Backup\\"));
}

TEST_F(RunFilesLoopTest, TimersTickWhileASlowMediumIsFlushed) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.FlushSlowly(300);
  int ticks = 0;
  Timer timer(machine.loop.Timers(), 100, true);
  timer.Tick.Listen([&] { ++ticks; });
  int ticks_before_the_end = 0;
  engine.run.SourceCaption.Changed.Listen([&] {
    if (engine.run.SourceCaption.Get().ends_with("Finished")) ticks_before_the_end = ticks;
  });
  Run();
  EXPECT_GE(ticks_before_the_end, 29);
}

TEST_F(RunFilesLoopTest, TheEndOfTheProgramWaitsForNoMedium) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.FlushSlowly(1'000'000);
  machine.loop.OnYield(50, [this] { machine.loop.Quit(0); });
  Run();
  EXPECT_LT(machine.loop.YieldCount(), 100);
  EXPECT_TRUE(machine.files.HasUnflushed("C:\\Backup\\"));
}

// --- changes of the list during a run

TEST_F(RunFilesLoopTest, AnEntryThatBecomesAFolderSkipsItsRow) {
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  machine.loop.OnYield(1, [this] {
    engine.settings.Entries.Assign({"C:\\Src\\a.txt", "C:\\Src\\Folder\\*+++++*"});
  });
  Run();
  EXPECT_THAT(Copied(), ElementsAre("a.txt"));
}

TEST_F(RunFilesLoopTest, ARemovedEntryDoesNotTakeItsRowAway) {
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  machine.loop.OnYield(1, [this] { engine.settings.Entries.Clear(); });
  Run();
  EXPECT_THAT(Copied(), ElementsAre("a.txt", "b.txt"));
  EXPECT_EQ(Status(), "Success >> Copied 0 Items, 11:00 To 11:00 On 3/14/2008.");
}

TEST_F(RunFilesLoopTest, AFolderAddedDuringTheFileLoopIsCopiedInTheFolderLoop) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.Write("C:\\Src\\Folder\\f.txt", "f");
  machine.loop.OnYield(1, [this] { Add("C:\\Src\\Folder\\*+++++*"); });
  Run();
  EXPECT_EQ(machine.files.Content("C:\\Backup\\Folder\\f.txt"), "f");
}

TEST_F(RunFilesLoopTest, AFileAddedDuringARunIsNotCopied) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.loop.OnYield(1, [this] { AddFile("C:\\Src\\b.txt", "b"); });
  Run();
  EXPECT_THAT(Copied(), ElementsAre("a.txt"));
}

TEST_F(RunFilesLoopTest, AModeChosenDuringARunCountsForTheRoundsToCome) {
  AddFile("C:\\Src\\a.txt", "a");
  AddFile("C:\\Src\\b.txt", "b");
  machine.files.SetAttributes("C:\\Src\\b.txt", 0);
  machine.loop.OnYield(2, [this] { engine.settings.BackupMode.Incremental = true; });
  Run();
  EXPECT_THAT(Copied(), ElementsAre("a.txt"));
}

}  // namespace
}  // namespace tarnvale::testing
