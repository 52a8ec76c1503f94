#include <gmock/gmock.h>

#include "tests/splitter/splitter_fixture.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using SplitTest = SplitJoinTest;

TEST_F(SplitTest, APathIsCutBehindItsLastBackslash) {
  EXPECT_EQ(LocateName("C:\\a\\b.txt").folder, "C:\\a\\");
  EXPECT_EQ(LocateName("C:\\a\\b.txt").name, "b.txt");
  EXPECT_EQ(LocateName("\\b").name, "b");
  EXPECT_EQ(LocateName("C:\\a\\").name, "");
  EXPECT_EQ(LocateName("C:\\a\\\\").folder, "C:\\a\\") << "the search begins one before the end";
}

TEST_F(SplitTest, APathWithoutABackslashOrOfOneCharacterHasNoName) {
  for (const char* path : {"", "b", "\\", "b.txt", "C:/a/b.txt"}) {
    EXPECT_EQ(RaisedBy([&] { LocateName(path); }), 5) << path;
  }
}

TEST_F(SplitTest, PartNumbersHaveAtLeastThreeDigits) {
  EXPECT_EQ(PartName("C:\\a.tvz", 1), "C:\\a.tvz.001");
  EXPECT_EQ(PartName("C:\\a.tvz", 42), "C:\\a.tvz.042");
  EXPECT_EQ(PartName("C:\\a.tvz", 999), "C:\\a.tvz.999");
  EXPECT_EQ(PartName("C:\\a.tvz", 1000), "C:\\a.tvz.1000");
}

TEST_F(SplitTest, TwoAndAHalfSegmentsGiveThreeParts) {
  EXPECT_EQ(SplitBytes("abcdefghij", 4), PartsCode::kDone);
  EXPECT_EQ(count, 3);
  EXPECT_THAT(OutNames(), ElementsAre("backup.tvz.001", "backup.tvz.002", "backup.tvz.003"));
  EXPECT_EQ(Content("C:\\out\\backup.tvz.001"), "abcd");
  EXPECT_EQ(Content("C:\\out\\backup.tvz.002"), "efgh");
  EXPECT_EQ(Content("C:\\out\\backup.tvz.003"), "ij");
  EXPECT_EQ(Content(source), "abcdefghij");
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
}

TEST_F(SplitTest, OneWholeSegmentGivesOnePart) {
  EXPECT_EQ(SplitBytes("abcd", 4), PartsCode::kDone);
  EXPECT_EQ(count, 1);
  EXPECT_THAT(OutNames(), ElementsAre("backup.tvz.001"));
}

TEST_F(SplitTest, AnEmptySourceGivesOneEmptyPart) {
  EXPECT_EQ(SplitBytes("", 4), PartsCode::kDone);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(Content("C:\\out\\backup.tvz.001"), "");
  EXPECT_THAT(percents, ElementsAre(0));
}

TEST_F(SplitTest, AMissingSourceOrAnEmptyNameIsCode1) {
  EXPECT_EQ(Split("C:\\in\\none.tvz", 0), PartsCode::kNoFile) << "tested before the size";
  EXPECT_EQ(Split("", 4), PartsCode::kNoFile);
  machine.files.MakeFolder("C:\\in\\folder");
  EXPECT_EQ(Split("C:\\in\\folder", 4), PartsCode::kNoFile);
  machine.files.Write(source, "abcd");
  machine.files.SetAttributes(source, attribute::kHidden);
  EXPECT_EQ(Split(source, 4), PartsCode::kNoFile) << "a plain listing leaves hidden files out";
  EXPECT_EQ(count, -1);
}

TEST_F(SplitTest, ASegmentSizeOfZeroIsCode2) {
  EXPECT_EQ(SplitBytes("abcd", 0), PartsCode::kNothingToDo);
  EXPECT_THAT(OutNames(), IsEmpty());
}

TEST_F(SplitTest, ARatioOf999AndAHalfGivesAThousandParts) {
  EXPECT_EQ(SplitBytes(GeneratedBytes(1999), 2), PartsCode::kDone);
  EXPECT_EQ(count, 1000);
  EXPECT_EQ(OutNames().size(), 1000U);
  EXPECT_EQ(Content("C:\\out\\backup.tvz.1000").size(), 1U);
}

TEST_F(SplitTest, ARatioOf1000IsCode3) {
  EXPECT_EQ(SplitBytes(GeneratedBytes(2000), 2), PartsCode::kRefused);
  EXPECT_EQ(SplitBytes(GeneratedBytes(1000), 1), PartsCode::kRefused);
  EXPECT_THAT(OutNames(), IsEmpty());
  EXPECT_EQ(count, -1);
}

TEST_F(SplitTest, ASourceWhoseLengthLeaves32BitsIsCode4) {
  machine.files.Write(source, "abcd");
  machine.files.ReportLength(source, std::int64_t{1} << 31U);
  EXPECT_EQ(Split(source, 1447035), PartsCode::kFailed);
}

TEST_F(SplitTest, APatternInPlaceOfANameIsListedAndThenFails) {
  machine.files.Write(source, "abcd");
  EXPECT_EQ(Split("C:\\in\\*.tvz", 2), PartsCode::kFailed);
}

TEST_F(SplitTest, AnOldLongerPartKeepsItsTail) {
  machine.files.Write("C:\\out\\backup.tvz.001", "0123456789");
  machine.files.Write("C:\\out\\backup.tvz.003", "old");
  EXPECT_EQ(SplitBytes("abcdef", 4), PartsCode::kDone);
  EXPECT_EQ(Content("C:\\out\\backup.tvz.001"), "abcd456789");
  EXPECT_EQ(Content("C:\\out\\backup.tvz.002"), "ef");
  EXPECT_EQ(Content("C:\\out\\backup.tvz.003"), "old");
}

TEST_F(SplitTest, ATailIsMovedInEverSmallerSteps) {
  std::vector<std::size_t> steps;
  std::size_t before = 0;
  on_progress = [&] {
    const std::size_t now = Content("C:\\out\\backup.tvz.001").size();
    if (now > before) steps.push_back(now - before);
    before = now;
  };
  EXPECT_EQ(SplitBytes(GeneratedBytes(12000 + 11999), 100000), PartsCode::kDone);
  EXPECT_THAT(steps, ElementsAre(12000, 6000, 3000, 1500, 500, 500, 100, 100, 100, 100, 25, 25, 25,
                                 5, 5, 5, 5, 1, 1, 1, 1));
}

TEST_F(SplitTest, ProgressIsCutDownAndEndsWithZero) {
  EXPECT_EQ(SplitBytes("abcdef", 1), PartsCode::kDone);
  EXPECT_THAT(percents, ElementsAre(16, 33, 50, 66, 83, 100, 0));
}

TEST_F(SplitTest, EachStepYieldsBeforeAndAfterItsProgressAndEachPartOnceMore) {
  std::vector<int> yields;
  on_progress = [&] { yields.push_back(machine.loop.YieldCount()); };
  EXPECT_EQ(SplitBytes("ab", 1), PartsCode::kDone);
  EXPECT_THAT(yields, ElementsAre(1, 4, 6));
}

TEST_F(SplitTest, TheFolderIsReadAtEachPart) {
  machine.files.MakeFolder("C:\\other");
  machine.loop.OnYield(1, [&] { target = "C:\\other"; });
  EXPECT_EQ(SplitBytes("ab", 1), PartsCode::kDone);
  EXPECT_THAT(OutNames(), ElementsAre("backup.tvz.001"));
  EXPECT_THAT(machine.files.Names("C:\\other"), ElementsAre("backup.tvz.002"));
}

TEST_F(SplitTest, WithoutAFolderThePartsGoToTheRoot) {
  target = "";
  EXPECT_EQ(SplitBytes("ab", 2), PartsCode::kDone);
  EXPECT_EQ(Content("C:\\backup.tvz.001"), "ab");
}

TEST_F(SplitTest, AnErrorClosesAllFilesOfTheProgramTheLogOfARunToo) {
  machine.open_files.OpenOutput(7, "C:\\in\\Backup Log.txt");
  machine.open_files.Write(7, "begun");
  machine.open_files.FailNext("Write", 61);
  EXPECT_EQ(SplitBytes("abcd", 4), PartsCode::kFailed);
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
  EXPECT_EQ(RaisedBy([&] { machine.open_files.Write(7, "more"); }), 52);
  EXPECT_EQ(Content("C:\\in\\Backup Log.txt"), "begun");
}

TEST_F(SplitTest, ARunThatHoldsTheFirstNumberMakesItFailAndLosesItsLog) {
  machine.open_files.OpenOutput(1, "C:\\in\\Backup Log.txt");
  EXPECT_EQ(SplitBytes("abcd", 4), PartsCode::kFailed);
  EXPECT_FALSE(machine.open_files.IsOpen(1));
}

TEST_F(SplitTest, WhatWasWrittenBeforeAnErrorStays) {
  machine.open_files.FailOn("OpenOwn", "C:\\out\\backup.tvz.002", 61);
  EXPECT_EQ(SplitBytes("abcdef", 4), PartsCode::kFailed);
  EXPECT_EQ(Content("C:\\out\\backup.tvz.001"), "abcd");
  EXPECT_THAT(percents, ElementsAre(16, 33, 50, 66));
  EXPECT_EQ(count, -1);
}

TEST_F(SplitTest, APartThatRefusesWritingIsCode4EvenForAnEmptySource) {
  machine.files.Write("C:\\out\\backup.tvz.001", "old");
  machine.files.SetAttributes("C:\\out\\backup.tvz.001", attribute::kReadOnly);
  EXPECT_EQ(SplitBytes("", 4), PartsCode::kFailed);
  EXPECT_EQ(Content("C:\\out\\backup.tvz.001"), "old");
}

TEST_F(SplitTest, ASourceThatBecomesShorterIsCode4) {
  machine.loop.OnYield(1, [&] { machine.files.Write(source, "ab"); });
  EXPECT_EQ(SplitBytes("abcdef", 4), PartsCode::kFailed);
}

TEST_F(SplitTest, ASecondRunDuringTheFirstBreaksBoth) {
  PartsCode second = PartsCode::kDone;
  std::int16_t second_count = -1;
  machine.loop.OnYield(1, [&] { second = hand.SplitFile(source, 4, second_count); });
  EXPECT_EQ(SplitBytes("abcdef", 4), PartsCode::kFailed);
  EXPECT_EQ(second, PartsCode::kFailed);
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
}

TEST_F(SplitTest, ANegativeSizeNeverReturnsAndKeepsYielding) {
  for (const char* bytes : {"abcdef", ""}) {
    machine.files.Write(source, bytes);
    machine.loop.OnYield(5000, [] { throw LeftByTest(); });
    EXPECT_THROW(Split(source, -4), LeftByTest);
    EXPECT_EQ(Content("C:\\out\\backup.tvz.001"), "");
    EXPECT_THAT(percents, IsEmpty());
    machine.open_files.CloseAll();
  }
}

TEST_F(SplitTest, ANegativeSizeEndsWithTheProgram) {
  machine.files.Write(source, "abcdef");
  machine.loop.OnYield(100, [&] { machine.loop.Quit(0); });
  EXPECT_EQ(Split(source, -4), PartsCode::kFailed);
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
}

}  // namespace
}  // namespace tarnvale::testing
