#include <gmock/gmock.h>

#include "tests/userdata/sync_fixture.h"

namespace tarnvale {

// How a row shows in a failed expectation.
void PrintTo(const FileDifference& row, std::ostream* out) {
  *out << row.name << ": " << row.status;
}

}  // namespace tarnvale

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Row = FileDifference;

class CompareFoldersTest : public SyncFixture {
 protected:
  std::vector<Row> Compare() { return sync.CompareFolders("C:\\1", "C:\\2"); }
};

struct PairCase {
  const char* fact;
  std::int64_t second_is_later_by_s;
  bool other_size;
  bool other_attributes;
  int status;
};

class ComparePairTest : public SyncFixture, public ::testing::WithParamInterface<PairCase> {};

TEST_P(ComparePairTest, HasItsStatus) {
  const PairCase& pair = GetParam();
  Put("C:\\1\\a.txt", "one");
  Put("C:\\2\\a.txt", pair.other_size ? "three" : "two", kNoon + pair.second_is_later_by_s);
  if (pair.other_attributes) machine.files.SetAttributes("C:\\2\\a.txt", attribute::kHidden);
  EXPECT_THAT(sync.CompareFolders("C:\\1", "C:\\2"), ElementsAre(Row{"a.txt", pair.status}));
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, ComparePairTest,
    ::testing::Values(PairCase{"NoDifference", 0, false, false, 0},
                      PairCase{"FirstNewerByASecond", -1, false, false, 1},
                      PairCase{"SecondNewerByASecond", 1, false, false, 2},
                      PairCase{"FirstNewerByAYear", -31536000, false, false, 1},
                      PairCase{"OtherSize", 0, true, false, 4},
                      PairCase{"FirstNewerAndOtherSize", -1, true, false, 5},
                      PairCase{"SecondNewerAndOtherSize", 1, true, false, 6},
                      PairCase{"OtherAttributes", 0, false, true, 8},
                      PairCase{"FirstNewerAndOtherAttributes", -1, false, true, 9},
                      PairCase{"SecondNewerAndOtherAttributes", 1, false, true, 10},
                      PairCase{"OtherSizeAndAttributes", 0, true, true, 12},
                      PairCase{"AllDiffer", 1, true, true, 14}),
    [](const auto& test) { return std::string(test.param.fact); });

TEST_F(CompareFoldersTest, AFileOfTheFirstFolderAloneHasMinusTwo) {
  Put("C:\\1\\a.txt", "one");
  EXPECT_THAT(Compare(), ElementsAre(Row{"a.txt", -2}));
}

TEST_F(CompareFoldersTest, AFileOfTheSecondFolderAloneHasMinusOne) {
  Put("C:\\2\\a.txt", "two");
  EXPECT_THAT(Compare(), ElementsAre(Row{"a.txt", -1}));
}

TEST_F(CompareFoldersTest, RowsOfTheFirstFolderComeBeforeThoseOfTheSecondAlone) {
  Put("C:\\1\\m.txt", "");
  Put("C:\\1\\z.txt", "");
  Put("C:\\2\\a.txt", "");
  Put("C:\\2\\m.txt", "");
  EXPECT_THAT(Compare(), ElementsAre(Row{"m.txt", 0}, Row{"z.txt", -2}, Row{"a.txt", -1}));
}

TEST_F(CompareFoldersTest, NamesThatDifferInCaseAreTheSame) {
  Put("C:\\1\\Read.TXT", "one");
  Put("C:\\2\\READ.txt", "two");
  EXPECT_THAT(Compare(), ElementsAre(Row{"Read.TXT", 0}));
}

TEST_F(CompareFoldersTest, FoldersAreNotCompared) {
  machine.files.MakeFolder("C:\\1\\Sub");
  machine.files.MakeFolder("C:\\2\\Other");
  EXPECT_THAT(Compare(), IsEmpty());
}

TEST_F(CompareFoldersTest, AFolderIsNotTheFileOfItsName) {
  Put("C:\\1\\x", "file");
  machine.files.MakeFolder("C:\\2\\x");
  EXPECT_THAT(Compare(), ElementsAre(Row{"x", -2}));
}

TEST_F(CompareFoldersTest, ABackslashAtTheEndOfEitherFolderChangesNothing) {
  Put("C:\\1\\a.txt", "one");
  Put("C:\\2\\a.txt", "three");
  machine.files.SetAttributes("C:\\2\\a.txt", 0);
  EXPECT_THAT(sync.CompareFolders("C:\\1\\", "C:\\2\\"), ElementsAre(Row{"a.txt", 12}));
}

TEST_F(CompareFoldersTest, TwoEmptyFoldersGiveNoRow) {
  EXPECT_THAT(Compare(), IsEmpty());
}

TEST_F(CompareFoldersTest, AMissingFolderCountsAsEmpty) {
  Put("C:\\1\\a.txt", "one");
  EXPECT_THAT(sync.CompareFolders("C:\\1", "C:\\Gone"), ElementsAre(Row{"a.txt", -2}));
  EXPECT_THAT(sync.CompareFolders("C:\\Gone", "C:\\1"), ElementsAre(Row{"a.txt", -1}));
}

TEST_F(CompareFoldersTest, AttributesThatCannotBeReadCountForNothing) {
  Put("C:\\1\\a.txt", "one");
  Put("C:\\2\\a.txt", "three");
  machine.files.SetAttributes("C:\\2\\a.txt", 0);
  machine.files.FailOn("Attributes", "C:\\2\\a.txt", 75);
  EXPECT_THAT(Compare(), ElementsAre(Row{"a.txt", 4}));
}

}  // namespace
}  // namespace tarnvale::testing
