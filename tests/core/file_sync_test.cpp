#include "core/file_sync.h"

#include <gmock/gmock.h>

#include "tests/userdata/sync_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class SyncFilesTest : public SyncFixture {};
class SyncFoldersTest : public SyncFixture {};

constexpr bool kTwoWay = true;
constexpr bool kOneWay = false;

// --- the direction of one file

struct DirectionCase {
  const char* fact;
  const char* first;   // content, null: no such file
  const char* second;  // likewise
  std::int64_t second_is_later_by_s;
  bool other_attributes;
  const char* first_after_two_way;
  const char* second_after_two_way;
  const char* first_after_one_way;
  const char* second_after_one_way;
};

class DirectionTest : public SyncFixture, public ::testing::WithParamInterface<DirectionCase> {
 protected:
  void SetUp() override {
    const DirectionCase& test = GetParam();
    if (test.first != nullptr) Put("C:\\1\\a.txt", test.first);
    if (test.second != nullptr) {
      Put("C:\\2\\a.txt", test.second, kNoon + test.second_is_later_by_s);
      if (test.other_attributes) machine.files.SetAttributes("C:\\2\\a.txt", 0);
    }
  }

  std::string Side(const Path& folder) const {
    return machine.files.Exists(folder + "\\a.txt") ? machine.files.Content(folder + "\\a.txt")
                                                    : "none";
  }
};

TEST_P(DirectionTest, TwoWay) {
  sync.SyncFiles("C:\\1", "C:\\2", kTwoWay);
  EXPECT_EQ(Side("C:\\1"), GetParam().first_after_two_way);
  EXPECT_EQ(Side("C:\\2"), GetParam().second_after_two_way);
}

TEST_P(DirectionTest, OneWay) {
  sync.SyncFiles("C:\\1", "C:\\2", kOneWay);
  EXPECT_EQ(Side("C:\\1"), GetParam().first_after_one_way);
  EXPECT_EQ(Side("C:\\2"), GetParam().second_after_one_way);
}

INSTANTIATE_TEST_SUITE_P(
    Files, DirectionTest,
    ::testing::Values(
        DirectionCase{"NoDifference", "one", "two", 0, false, "one", "two", "one", "two"},
        DirectionCase{"OtherAttributes", "one", "two", 0, true, "one", "two", "one", "two"},
        DirectionCase{"FirstAlone", "one", nullptr, 0, false, "one", "one", "one", "one"},
        DirectionCase{"SecondAlone", nullptr, "two", 0, false, "two", "two", "none", "two"},
        DirectionCase{"FirstNewer", "one", "two", -1, false, "one", "one", "one", "one"},
        DirectionCase{"SecondNewer", "one", "two", 1, false, "two", "two", "one", "two"},
        DirectionCase{"FirstNewerOtherAttributes", "one", "two", -1, true,  //
                      "one", "one", "one", "one"},
        DirectionCase{"SecondNewerOtherAttributes", "one", "two", 1, true,  //
                      "two", "two", "one", "two"},
        DirectionCase{"OtherSize", "one", "three", 0, false, "one", "one", "one", "one"},
        DirectionCase{"OtherSizeAndAttributes", "one", "three", 0, true,  //
                      "one", "one", "one", "one"},
        DirectionCase{"FirstNewerOtherSize", "one", "three", -1, false,  //
                      "one", "one", "one", "one"},
        DirectionCase{"SecondNewerOtherSize", "one", "three", 1, false,  //
                      "three", "three", "one", "three"}),
    [](const auto& test) { return std::string(test.param.fact); });

// --- SyncFiles

TEST_F(SyncFilesTest, ASecondSyncFindsNothingToCopy) {
  Put("C:\\1\\a.txt", "one");
  Put("C:\\2\\b.txt", "two", kNoon + 5);
  sync.SyncFiles("C:\\1", "C:\\2", kTwoWay);
  machine.files.ClearCalls();
  sync.SyncFiles("C:\\1", "C:\\2", kTwoWay);
  EXPECT_EQ(machine.files.CallsOf("CopyEntry"), 0);
}

TEST_F(SyncFilesTest, EachFileIsReportedBeforeItIsCopiedOrLeftAlone) {
  Put("C:\\1\\first", "first");
  Put("C:\\1\\newer", "newer", kNoon + 1);
  Put("C:\\2\\newer", "older");
  Put("C:\\1\\older", "older");
  Put("C:\\2\\OLDER", "newer", kNoon + 1);
  Put("C:\\2\\second", "second");
  std::vector<std::string> reported;
  sync.OnCompared = [&](const ComparedFile& file) {
    const bool to_first = file.direction == SyncDirection::kSecondToFirst;
    const std::string there = file.copies && !to_first
                                  ? machine.files.Exists("C:\\2\\first") ? " copied" : " to come"
                                  : "";
    reported.push_back(file.first.name + "/" + file.second.name + " " +
                       std::to_string(file.status) + (to_first ? " back" : " on") +
                       (file.copies ? "" : " left") + there);
  };
  sync.SyncFiles("C:\\1", "C:\\2", kOneWay);
  EXPECT_THAT(reported, ElementsAre("first/first -2 on to come", "newer/newer 1 on copied",
                                    "older/OLDER 2 back left", "second/second -1 back left"));
}

TEST_F(SyncFilesTest, BackslashesAtTheEndChangeNothing) {
  Put("C:\\1\\a.txt", "one");
  sync.SyncFiles("C:\\1\\", "C:\\2\\", kOneWay);
  EXPECT_THAT(machine.files.Calls(), ::testing::Contains("CopyEntry C:\\1\\a.txt -> C:\\2\\a.txt"));
}

TEST_F(SyncFilesTest, EachRowYieldsCopiedOrNot) {
  Put("C:\\1\\copied.txt", "one");
  Put("C:\\1\\same.txt", "one");
  Put("C:\\2\\same.txt", "two");
  Put("C:\\2\\z.txt", "two");
  sync.SyncFiles("C:\\1", "C:\\2", kOneWay);
  EXPECT_EQ(machine.loop.YieldCount(), 3);
}

TEST_F(SyncFilesTest, AYieldComesAfterItsCopy) {
  Put("C:\\1\\a.txt", "one");
  Put("C:\\1\\b.txt", "one");
  std::vector<std::string> in_second;
  machine.loop.OnYield(1, [&] { in_second = machine.files.Names("C:\\2"); });
  sync.SyncFiles("C:\\1", "C:\\2", kOneWay);
  EXPECT_THAT(in_second, ElementsAre("a.txt"));
}

TEST_F(SyncFilesTest, AFailedCopyEndsThePassAndGoesOut) {
  for (const char* name : {"a", "b", "c"}) Put(std::string("C:\\1\\") + name, "one");
  machine.files.FailOn("CopyEntry", "C:\\1\\b", 61);
  EXPECT_EQ(RaisedBy([&] { sync.SyncFiles("C:\\1", "C:\\2", kOneWay); }), 61);
  EXPECT_THAT(machine.files.Names("C:\\2"), ElementsAre("a"));
  EXPECT_EQ(machine.loop.YieldCount(), 1);
}

TEST_F(SyncFilesTest, TwoEmptyFoldersFailAtTheStart) {
  EXPECT_EQ(RaisedBy([&] { sync.SyncFiles("C:\\1", "C:\\2", kTwoWay); }), 9);
  EXPECT_EQ(machine.loop.YieldCount(), 0);
}

TEST_F(SyncFilesTest, AMissingFolderCountsAsEmptyAndNothingIsCopiedToIt) {
  Put("C:\\1\\a.txt", "one");
  sync.OnCompared = [](const ComparedFile&) { ADD_FAILURE() << "there is nothing to compare"; };
  EXPECT_EQ(RaisedBy([&] { sync.SyncFiles("C:\\1", "C:\\Gone", kTwoWay); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { sync.SyncFiles("C:\\Gone", "C:\\1", kTwoWay); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { sync.SyncFiles("C:\\Gone", "C:\\1", kOneWay); }), 0);
  EXPECT_FALSE(machine.files.Exists("C:\\Gone"));
}

// --- SyncFolders

TEST_F(SyncFoldersTest, AMissingSecondFolderIsMadeInOneStepWithoutAComparison) {
  Put("C:\\1\\a.txt", "one");
  Put("C:\\1\\Sub\\b.txt", "one");
  sync.SyncFolders("C:\\1", "C:\\New", kOneWay);
  EXPECT_EQ(machine.files.Content("C:\\New\\a.txt"), "one");
  EXPECT_EQ(machine.files.Content("C:\\New\\Sub\\b.txt"), "one");
  EXPECT_THAT(machine.files.Calls(),
              ElementsAre("OpenFolder C:\\1", "OpenFolder C:\\New", "CopyTree C:\\1 -> C:\\New"));
}

TEST_F(SyncFoldersTest, AMissingFirstFolderIsTriedAndPassedOver) {
  Put("C:\\2\\a.txt", "two");
  sync.SyncFolders("C:\\Gone", "C:\\2", kTwoWay);
  EXPECT_EQ(machine.files.CallsOf("CopyTree"), 1);
  EXPECT_FALSE(machine.files.Exists("C:\\Gone"));
  EXPECT_THAT(machine.files.Names("C:\\2"), ElementsAre("a.txt"));
}

TEST_F(SyncFoldersTest, AFailureAtTheOpeningSendsItToTheWholeCopyWithOverwrite) {
  Put("C:\\1\\a.txt", "old one", kNoon - 100);
  Put("C:\\2\\a.txt", "new two", kNoon);
  machine.files.FailOn("OpenFolder", "C:\\2", 70);
  sync.SyncFolders("C:\\1", "C:\\2", kTwoWay);
  EXPECT_EQ(machine.files.Content("C:\\2\\a.txt"), "old one");
}

TEST_F(SyncFoldersTest, NothingIsCopiedOverWhatCannotBeListed) {
  Put("C:\\1\\a.txt", "old one", kNoon - 100);
  Put("C:\\2\\a.txt", "new two", kNoon);
  Put("C:\\1\\Sub\\b.txt", "old one", kNoon - 100);
  Put("C:\\2\\Sub\\b.txt", "new two", kNoon);
  for (const char* folder : {"C:\\1", "C:\\2", "C:\\1\\Sub", "C:\\2\\Sub"}) {
    machine.files.FailOn("Contents", folder, 57);
    sync.SyncFolders("C:\\1", "C:\\2", kOneWay);
    machine.files.ClearFailures();
    EXPECT_EQ(machine.files.Content("C:\\2\\a.txt"), "new two") << folder;
    EXPECT_EQ(machine.files.Content("C:\\2\\Sub\\b.txt"), "new two") << folder;
  }
}

TEST_F(SyncFoldersTest, SubFoldersAreKeptInStepAtEveryDepth) {
  Put("C:\\1\\Sub\\Deep\\a.txt", "one", kNoon + 1);
  Put("C:\\2\\Sub\\Deep\\a.txt", "two", kNoon);
  Put("C:\\2\\Sub\\Deep\\b.txt", "two");
  sync.SyncFolders("C:\\1", "C:\\2", kTwoWay);
  EXPECT_EQ(machine.files.Content("C:\\2\\Sub\\Deep\\a.txt"), "one");
  EXPECT_EQ(machine.files.Content("C:\\1\\Sub\\Deep\\b.txt"), "two");
}

TEST_F(SyncFoldersTest, OneWayHoldsForSubFoldersToo) {
  Put("C:\\1\\Sub\\a.txt", "one", kNoon);
  Put("C:\\2\\Sub\\a.txt", "two", kNoon + 1);
  Put("C:\\2\\Sub\\b.txt", "two");
  sync.SyncFolders("C:\\1", "C:\\2", kOneWay);
  EXPECT_EQ(machine.files.Content("C:\\1\\Sub\\a.txt"), "one");
  EXPECT_EQ(machine.files.Content("C:\\2\\Sub\\a.txt"), "two");
  EXPECT_FALSE(machine.files.Exists("C:\\1\\Sub\\b.txt"));
}

TEST_F(SyncFoldersTest, AFolderOfTheSecondAloneIsCopiedBackWhenTwoWay) {
  Put("C:\\2\\Only\\Deep\\a.txt", "two");
  sync.SyncFolders("C:\\1", "C:\\2", kTwoWay);
  EXPECT_EQ(machine.files.Content("C:\\1\\Only\\Deep\\a.txt"), "two");
}

TEST_F(SyncFoldersTest, AFolderOfTheSecondAloneIsLeftAloneWhenOneWay) {
  Put("C:\\2\\Only\\a.txt", "two");
  sync.SyncFolders("C:\\1", "C:\\2", kOneWay);
  EXPECT_FALSE(machine.files.Exists("C:\\1\\Only"));
  EXPECT_TRUE(machine.files.Exists("C:\\2\\Only\\a.txt"));
}

TEST_F(SyncFoldersTest, AFileOfTheSecondAloneStaysWhenOneWay) {
  Put("C:\\1\\a.txt", "one");
  Put("C:\\2\\b.txt", "two");
  sync.SyncFolders("C:\\1", "C:\\2", kOneWay);
  EXPECT_THAT(machine.files.Names("C:\\1"), ElementsAre("a.txt"));
  EXPECT_THAT(machine.files.Names("C:\\2"), ElementsAre("a.txt", "b.txt"));
}

TEST_F(SyncFoldersTest, ADeletionComesBackFromTheOtherSide) {
  Put("C:\\1\\a.txt", "one");
  Put("C:\\1\\Sub\\b.txt", "one");
  sync.SyncFolders("C:\\1", "C:\\2", kTwoWay);
  machine.files.Remove("C:\\1\\a.txt");
  machine.files.Remove("C:\\1\\Sub");
  sync.SyncFolders("C:\\1", "C:\\2", kTwoWay);
  EXPECT_EQ(machine.files.Content("C:\\1\\a.txt"), "one");
  EXPECT_EQ(machine.files.Content("C:\\1\\Sub\\b.txt"), "one");
}

TEST_F(SyncFoldersTest, FolderNamesThatDifferInCaseAreTheSame) {
  Put("C:\\1\\Sub\\a.txt", "one");
  Put("C:\\2\\SUB\\b.txt", "two");
  sync.SyncFolders("C:\\1", "C:\\2", kTwoWay);
  EXPECT_THAT(machine.files.Names("C:\\1"), ElementsAre("Sub"));
  EXPECT_THAT(machine.files.Names("C:\\1\\Sub"), ElementsAre("a.txt", "b.txt"));
  EXPECT_THAT(machine.files.Names("C:\\2\\SUB"), ElementsAre("a.txt", "b.txt"));
  EXPECT_EQ(machine.files.CallsOf("CopyTree"), 0);
}

TEST_F(SyncFoldersTest, AFailedCopyEndsItsFolderAndNotTheSubFolders) {
  Put("C:\\1\\a.txt", "one");
  Put("C:\\1\\b.txt", "one");
  Put("C:\\1\\Sub\\c.txt", "one");
  machine.files.MakeFolder("C:\\2\\Sub");
  machine.files.FailOn("CopyEntry", "C:\\1\\a.txt", 70);
  sync.SyncFolders("C:\\1", "C:\\2", kTwoWay);
  EXPECT_FALSE(machine.files.Exists("C:\\2\\b.txt"));
  EXPECT_EQ(machine.files.Content("C:\\2\\Sub\\c.txt"), "one");
  EXPECT_TRUE(machine.boxes.Shown().empty());
}

TEST_F(SyncFoldersTest, AFailedFolderOfTheSecondIsPassedOverAndTheNextIsCopied) {
  Put("C:\\2\\Bad\\a.txt", "two");
  Put("C:\\2\\Good\\a.txt", "two");
  machine.files.FailOn("CopyTree", "C:\\2\\Bad", 70);
  sync.SyncFolders("C:\\1", "C:\\2", kTwoWay);
  EXPECT_TRUE(machine.files.Exists("C:\\1\\Good\\a.txt"));
}

TEST_F(SyncFoldersTest, EmptyFoldersDoNotStopTheWayToTheirSubFolders) {
  Put("C:\\1\\Sub\\a.txt", "one");
  machine.files.MakeFolder("C:\\2\\Sub");
  sync.SyncFolders("C:\\1", "C:\\2", kOneWay);
  EXPECT_EQ(machine.files.Content("C:\\2\\Sub\\a.txt"), "one");
}

TEST_F(SyncFoldersTest, EachSubFolderYieldsOnceMore) {
  Put("C:\\1\\A\\a.txt", "one");
  Put("C:\\1\\B\\b.txt", "one");
  machine.files.MakeFolder("C:\\2\\A");
  machine.files.MakeFolder("C:\\2\\B");
  sync.SyncFolders("C:\\1", "C:\\2", kOneWay);
  EXPECT_EQ(machine.loop.YieldCount(), 4);
}

TEST_F(SyncFoldersTest, ASyncWithItselfChangesNothing) {
  Put("C:\\1\\a.txt", "one");
  sync.SyncFolders("C:\\1", "C:\\1", kTwoWay);
  EXPECT_EQ(machine.files.CallsOf("CopyEntry"), 0);
  EXPECT_THAT(machine.files.Names("C:\\1"), ElementsAre("a.txt"));
}

TEST_F(SyncFoldersTest, TheFirstFolderIsNotEnteredWhereItIsMetInTheSecond) {
  Put("C:\\2\\Work\\a.txt", "outer");
  Put("C:\\2\\Work\\Work\\b.txt", "inner");
  sync.SyncFolders("C:\\2\\Work", "C:\\2", kOneWay);
  EXPECT_EQ(machine.files.Content("C:\\2\\a.txt"), "outer");
  EXPECT_FALSE(machine.files.Exists("C:\\2\\Work\\b.txt"));
}

TEST_F(SyncFoldersTest, TheCopyOfAWholeFolderYieldsBehindEachFile) {
  Put("C:\\1\\a.txt", "one");
  Put("C:\\1\\Sub\\b.txt", "one");
  sync.SyncFolders("C:\\1", "C:\\3", kOneWay);
  EXPECT_EQ(machine.loop.YieldCount(), 2);
}

}  // namespace
}  // namespace tarnvale::testing
