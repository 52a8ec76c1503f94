#include "core/run_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/text.h"
#include "settings/backup_list.h"
#include "tests/support/fake_machine.h"
#include "tests/support/raised.h"

namespace tarnvale {

// How a row shows in a failed expectation.
void PrintTo(const RunFile& row, std::ostream* out) {
  *out << '"' << row.Path << "\" " << row.Size;
}

}  // namespace tarnvale

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

const RunFile kEmptyRow{};

class RunFilesTest : public ::testing::Test {
 protected:
  RunFilesTest() {
    machine.files.Write("C:\\A", "a");
    machine.files.Write("C:\\B", "bb");
    machine.files.Write("C:\\D\\x", "1");
    machine.files.Write("C:\\D\\y", "22");
    machine.files.Write("C:\\D\\z", "333");
    machine.files.MakeFolder("C:\\F");
  }

  // Adds items as a run does.
  void Build(const std::vector<std::string>& items) {
    PassedOver pass;
    for (const std::string& item : items) {
      pass.Step([&] { table.AddItem(machine.files, machine.boxes, item); });
    }
  }

  std::vector<RunFile> Rows() const {
    std::vector<RunFile> rows;
    for (std::size_t row = 0; row <= table.UpperBound(); ++row) {
      rows.push_back(table.Row(static_cast<std::int64_t>(row)));
    }
    return rows;
  }

  FakeMachine machine;
  RunFiles table;
};

const char* const kContents = "C:\\D\\*.*";
const char* const kWhole = "C:\\F\\*+++++*";

TEST_F(RunFilesTest, BeginsAsOneEmptyRow) {
  EXPECT_THAT(Rows(), ElementsAre(kEmptyRow));
  EXPECT_EQ(table.UpperBound(), 0U);
}

TEST_F(RunFilesTest, FilesTakeOneRowEachInOrder) {
  Build({"C:\\A", "C:\\B", "C:\\A"});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\A", 1}, RunFile{"C:\\B", 2}, RunFile{"C:\\A", 1},
                                  kEmptyRow));
}

TEST_F(RunFilesTest, OneWholeFolderLeavesTwoEmptyRows) {
  Build({kWhole});
  EXPECT_THAT(Rows(), ElementsAre(kEmptyRow, kEmptyRow));
}

TEST_F(RunFilesTest, AFileBehindAWholeFolderIsInStep) {
  Build({kWhole, "C:\\A"});
  EXPECT_THAT(Rows(), ElementsAre(kEmptyRow, RunFile{"C:\\A", 1}, kEmptyRow));
}

TEST_F(RunFilesTest, AWholeFolderBehindOneFileAddsNoRow) {
  Build({"C:\\A", kWhole, "C:\\B"});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\A", 1}, RunFile{"C:\\B", 2}, kEmptyRow));
}

TEST_F(RunFilesTest, ASecondWholeFolderAddsNoRowEither) {
  Build({kWhole, kWhole, "C:\\A"});
  EXPECT_THAT(Rows(), ElementsAre(kEmptyRow, RunFile{"C:\\A", 1}, kEmptyRow));
}

TEST_F(RunFilesTest, AWholeFolderBehindTwoFilesAddsItsEmptyRow) {
  Build({"C:\\A", "C:\\B", kWhole, "C:\\A"});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\A", 1}, RunFile{"C:\\B", 2}, kEmptyRow,
                                  RunFile{"C:\\A", 1}, kEmptyRow));
}

TEST_F(RunFilesTest, AFoldersContentsTakeARowForEachFile) {
  Build({kContents});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\D\\x", 1}, RunFile{"C:\\D\\y", 2},
                                  RunFile{"C:\\D\\z", 3}, kEmptyRow));
}

TEST_F(RunFilesTest, AFoldersContentsBehindTwoFilesBeginInStep) {
  Build({"C:\\A", "C:\\B", kContents, "C:\\A"});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\A", 1}, RunFile{"C:\\B", 2}, RunFile{"C:\\D\\x", 1},
                                  RunFile{"C:\\D\\y", 2}, RunFile{"C:\\D\\z", 3},
                                  RunFile{"C:\\A", 1}, kEmptyRow));
}

TEST_F(RunFilesTest, AFoldersContentsBehindOneFileWriteOverItsRow) {
  // With an upper bound of 1 both counters begin at row 0.
  Build({"C:\\A", kContents});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\D\\y", 2}, RunFile{"C:\\D\\z", 3}, kEmptyRow));
}

TEST_F(RunFilesTest, OneFileOfAFolderBehindOneFileTakesItsRow) {
  machine.files.Write("C:\\One\\only", "7777");
  Build({"C:\\A", "C:\\One\\*.*"});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\One\\only", 4}, kEmptyRow));
}

TEST_F(RunFilesTest, AnEmptyFoldersContentsAddOneEmptyRow) {
  Build({"C:\\A", "C:\\B", "C:\\F\\*.*", "C:\\A"});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\A", 1}, RunFile{"C:\\B", 2}, kEmptyRow,
                                  RunFile{"C:\\A", 1}, kEmptyRow));
}

TEST_F(RunFilesTest, ContentsAreListedWithoutFoldersAndByTheirOwnPattern) {
  machine.files.Write("C:\\D\\Sub\\deep", "");
  Build({kContents});
  EXPECT_THAT(machine.files.Calls(), ::testing::Contains("List C:\\D\\*.*"));
  EXPECT_EQ(table.UpperBound(), 3U);
}

TEST_F(RunFilesTest, HiddenAndSystemFilesPushNothingOutOfTheRows) {
  machine.files.Write("C:\\D\\a", "1");
  machine.files.SetAttributes("C:\\D\\a", attribute::kHidden);
  machine.files.Write("C:\\D\\b", "1");
  machine.files.SetAttributes("C:\\D\\b", attribute::kSystem);
  machine.files.Write("C:\\D\\x", "1");
  machine.files.SetAttributes("C:\\D\\x", attribute::kReadOnly);
  Build({kContents});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\D\\x", 1}, RunFile{"C:\\D\\y", 2},
                                  RunFile{"C:\\D\\z", 3}, kEmptyRow));
}

TEST_F(RunFilesTest, AWholeFolderIsListedByAPatternThatMatchesNothing) {
  machine.files.Write("C:\\F\\a.txt", "a");
  Build({kWhole});
  EXPECT_THAT(machine.files.Calls(), ElementsAre("List C:\\F\\*+++*.*"));
}

TEST_F(RunFilesTest, AMissingFileKeepsItsPathAndTheNextTakesItsRow) {
  Build({"C:\\A", "C:\\gone"});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\A", 1}, RunFile{"C:\\gone", 0}));
  Build({"C:\\B"});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\A", 1}, RunFile{"C:\\B", 2}, kEmptyRow));
}

TEST_F(RunFilesTest, AMissingFileRaisesWhatItsLengthRaises) {
  EXPECT_EQ(RaisedBy([&] { table.AddFileToRun(machine.files, "C:\\gone"); }), kFileNotFound);
}

TEST_F(RunFilesTest, AFolderThatCannotBeListedShowsABoxAndKeepsItsEmptyRow) {
  machine.files.FailNext("List", 75);
  machine.boxes.Expect("Error:\n\n75:Path/File access error", BoxIcon::kStop, BoxAnswer::kOk);
  Build({kContents, "C:\\A"});
  EXPECT_THAT(Rows(), ElementsAre(kEmptyRow, RunFile{"C:\\A", 1}, kEmptyRow));
}

TEST_F(RunFilesTest, AFileThatGoesAwayDuringTheListingEndsItWithABox) {
  machine.files.FailOn("Length", "C:\\D\\y", 53);
  machine.boxes.Expect("Error:\n\n53:File not found", BoxIcon::kStop, BoxAnswer::kOk);
  Build({kContents});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\D\\x", 1}, RunFile{"C:\\D\\y", 0}));
}

TEST_F(RunFilesTest, AMissingFolderAddsAnEmptyRowAndNoBox) {
  Build({"C:\\Gone\\*.*"});
  EXPECT_THAT(Rows(), ElementsAre(kEmptyRow, kEmptyRow));
}

TEST_F(RunFilesTest, ARowBeyondTheBoundRaisesNine) {
  for (const std::int64_t row : {std::int64_t{-1}, std::int64_t{1}}) {
    EXPECT_EQ(RaisedBy([&] { table.Row(row); }), kSubscriptOutOfRange) << row;
  }
}

TEST_F(RunFilesTest, AnEmptyItemIsAFileWithoutAName) {
  Build({"C:\\A", ""});
  EXPECT_EQ(machine.files.CallsOf("List"), 0);
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\A", 1}, kEmptyRow));
}

TEST_F(RunFilesTest, ThePatternAloneIsListedAsItself) {
  Build({"*.*"});
  EXPECT_THAT(machine.files.Calls(), ::testing::Contains("List *.*"));
}

TEST_F(RunFilesTest, APatternThatEndsInAStarIsListedAsItIs) {
  Build({"C:\\F\\z**.*"});
  EXPECT_THAT(machine.files.Calls(), ElementsAre("List C:\\F\\z*"));
}

TEST_F(RunFilesTest, ResetGoesBackToOneEmptyRow) {
  Build({"C:\\A", "C:\\B"});
  table.Reset();
  EXPECT_THAT(Rows(), ElementsAre(kEmptyRow));
}

TEST_F(RunFilesTest, AFileBeyond32BitsIsInTheTableWithTheLargestSize) {
  machine.files.ReportLength("C:\\A", std::int64_t{5} << 30);
  Build({"C:\\A"});
  EXPECT_THAT(Rows(), ElementsAre(RunFile{"C:\\A", 2147483647}, kEmptyRow));
}

TEST(FolderMarkerTest, MakesAnItemOfFivePlusSigns) {
  EXPECT_EQ(CountChar("C:\\Data\\" + std::string(kFolderMarker), "+"), 5);
}

}  // namespace
}  // namespace tarnvale::testing
