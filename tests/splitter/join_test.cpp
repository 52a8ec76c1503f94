#include <gmock/gmock.h>

#include "tests/splitter/splitter_fixture.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class JoinTest : public SplitJoinTest {
 protected:
  JoinTest() {
    machine.files.Write("C:\\out\\backup.tvz.001", "abcd");
    machine.files.Write("C:\\out\\backup.tvz.002", "ef");
  }
};

TEST_F(JoinTest, PartsAreJoinedBesideThemAndStay) {
  EXPECT_EQ(Join("C:\\out\\backup.tvz.001"), PartsCode::kDone);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(Content("C:\\out\\backup.tvz"), "abcdef");
  EXPECT_THAT(OutNames(), ElementsAre("backup.tvz", "backup.tvz.001", "backup.tvz.002"));
  EXPECT_EQ(joined.Get(), "C:\\out\\backup.tvz");
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
}

TEST_F(JoinTest, AnyPartMayBeNamedAndTheArgumentEndsAtTheLastOne) {
  for (const char* part : {"001", "002", "xyz"}) {
    machine.files.Write("C:\\out\\backup.tvz.xyz", "no part");
    machine.files.Remove("C:\\out\\backup.tvz");
    EXPECT_EQ(Join(std::string("C:\\out\\backup.tvz.") + part), PartsCode::kDone);
    EXPECT_EQ(Content("C:\\out\\backup.tvz"), "abcdef");
    EXPECT_EQ(named_part, "C:\\out\\backup.tvz.002");
  }
}

TEST_F(JoinTest, AGapEndsTheJoinWithoutAWord) {
  machine.files.Write("C:\\out\\backup.tvz.004", "lost");
  EXPECT_EQ(Join("C:\\out\\backup.tvz.004"), PartsCode::kDone);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(Content("C:\\out\\backup.tvz"), "abcdef");
  EXPECT_EQ(named_part, "C:\\out\\backup.tvz.002");
}

TEST_F(JoinTest, ANameWithoutAPointIsItsOwnBaseName) {
  machine.files.Write("C:\\out\\plain", "x");
  EXPECT_EQ(Join("C:\\out\\plain"), PartsCode::kNothingToDo) << "there is no plain.001";
  machine.files.Write("C:\\out\\plain.001", "x");
  EXPECT_EQ(Join("C:\\out\\plain"), PartsCode::kRefused) << "the named file is the output";
}

TEST_F(JoinTest, AMissingPartOrAnEmptyNameIsCode1) {
  EXPECT_EQ(Join("C:\\out\\backup.tvz.003"), PartsCode::kNoFile);
  EXPECT_EQ(named_part, "C:\\out\\backup.tvz.003");
  EXPECT_EQ(Join(""), PartsCode::kNoFile);
  EXPECT_EQ(joined.Get(), "Text2");
  EXPECT_EQ(count, -1);
}

TEST_F(JoinTest, AMissingFirstPartIsCode2) {
  machine.files.Remove("C:\\out\\backup.tvz.001");
  EXPECT_EQ(Join("C:\\out\\backup.tvz.002"), PartsCode::kNothingToDo);
  EXPECT_EQ(joined.Get(), "C:\\out\\backup.tvz") << "the name is reported before the first part is";
  EXPECT_FALSE(machine.files.Exists("C:\\out\\backup.tvz"));
}

TEST_F(JoinTest, TheUnsplitFileInTheFolderIsCode3) {
  machine.files.Write("C:\\out\\backup.tvz", "unsplit");
  EXPECT_EQ(Join("C:\\out\\backup.tvz.001"), PartsCode::kRefused);
  EXPECT_EQ(Content("C:\\out\\backup.tvz"), "unsplit");
  EXPECT_EQ(named_part, "C:\\out\\backup.tvz.001");
  EXPECT_THAT(percents, IsEmpty());
}

TEST_F(JoinTest, ProgressCountsAllPartsAndEndsWithZero) {
  std::vector<int> yields;
  on_progress = [&] { yields.push_back(machine.loop.YieldCount()); };
  EXPECT_EQ(Join("C:\\out\\backup.tvz.001"), PartsCode::kDone);
  EXPECT_THAT(percents, ElementsAre(16, 33, 50, 66, 83, 100, 0));
  EXPECT_THAT(yields, ElementsAre(1, 3, 5, 7, 10, 12, 14));
}

TEST_F(JoinTest, EmptyPartsMakeAnEmptyFile) {
  machine.files.Write("C:\\out\\e.001", "");
  machine.files.Write("C:\\out\\e.002", "");
  EXPECT_EQ(Join("C:\\out\\e.001"), PartsCode::kDone);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(Content("C:\\out\\e"), "");
  EXPECT_THAT(percents, ElementsAre(0));
}

TEST_F(JoinTest, LengthsThatTogetherLeave32BitsAreCode4) {
  machine.files.ReportLength("C:\\out\\backup.tvz.001", 0x7FFFFFFF);
  EXPECT_EQ(Join("C:\\out\\backup.tvz.001"), PartsCode::kFailed);
  EXPECT_FALSE(machine.files.Exists("C:\\out\\backup.tvz"));
}

TEST_F(JoinTest, AnErrorClosesAllFilesAndLeavesWhatWasWritten) {
  machine.open_files.OpenOutput(7, "C:\\in\\Backup Log.txt");
  machine.open_files.FailOn("OpenInput", "C:\\out\\backup.tvz.002", 70);
  EXPECT_EQ(Join("C:\\out\\backup.tvz.001"), PartsCode::kFailed);
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
  EXPECT_EQ(RaisedBy([&] { machine.open_files.Write(7, "more"); }), 52);
  EXPECT_EQ(Content("C:\\out\\backup.tvz"), "abcd");
  EXPECT_EQ(named_part, "C:\\out\\backup.tvz.002");
  EXPECT_EQ(count, -1);
}

TEST_F(JoinTest, APartThatVanishesMeanwhileIsCode4) {
  machine.loop.OnYield(1, [&] { machine.files.Remove("C:\\out\\backup.tvz.002"); });
  EXPECT_EQ(Join("C:\\out\\backup.tvz.001"), PartsCode::kFailed);
}

TEST_F(JoinTest, PartsThatWereEmptyAtTheCountHaveNoPercent) {
  machine.files.Write("C:\\out\\e.001", "");
  machine.files.Write("C:\\out\\e.002", "");
  machine.loop.OnYield(1, [&] { machine.files.Write("C:\\out\\e.002", "late"); });
  EXPECT_EQ(Join("C:\\out\\e.001"), PartsCode::kFailed);
}

TEST_F(JoinTest, ASplitDuringAJoinBreaksBoth) {
  machine.files.Write(source, "abcd");
  PartsCode second = PartsCode::kDone;
  machine.loop.OnYield(2, [&] {
    std::int16_t parts = 0;
    second = hand.SplitFile(source, 4, parts);
  });
  EXPECT_EQ(Join("C:\\out\\backup.tvz.001"), PartsCode::kFailed);
  EXPECT_EQ(second, PartsCode::kFailed);
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
}

}  // namespace
}  // namespace tarnvale::testing
