// The run's folder loop.
#include "core/backup_run.h"
#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class RunFoldersTest : public RunFixture {
 protected:
  static constexpr std::int64_t kNoon = 1205496000;

  void Put(const Path& file, const std::string& content, std::int64_t modified_s = kNoon) {
    machine.files.Write(file, content);
    machine.files.SetModified(file, modified_s);
  }
  void AddFolder(const Path& folder) {
    machine.files.MakeFolder(folder);
    Add(folder + "\\*+++++*");
  }
};

// --- where a folder goes

TEST_F(RunFoldersTest, AFolderGoesToASubFolderOfItsName) {
  Put("C:\\Src\\Work\\a.txt", "a");
  Put("C:\\Src\\Work\\Deep\\b.txt", "b");
  AddFolder("C:\\Src\\Work");
  Run();
  EXPECT_EQ(machine.files.Content("C:\\Backup\\Work\\a.txt"), "a");
  EXPECT_EQ(machine.files.Content("C:\\Backup\\Work\\Deep\\b.txt"), "b");
}

TEST_F(RunFoldersTest, AFolderUnderADriveRootGoesStraightIntoTheDestination) {
  Put("C:\\Top\\a.txt", "a");
  AddFolder("C:\\Top");
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Backup"), ElementsAre("a.txt"));
  EXPECT_EQ(engine.run.PathSepCount.Get(), "1");
}

TEST_F(RunFoldersTest, AFolderUnderADriveRootTakesTheNameOfTheFolderBefore) {
  Put("C:\\Src\\Work\\a.txt", "a");
  Put("C:\\Top\\b.txt", "b");
  AddFolder("C:\\Src\\Work");
  AddFolder("C:\\Top");
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Backup"), ElementsAre("Work"));
  EXPECT_THAT(machine.files.Names("C:\\Backup\\Work"), ElementsAre("a.txt", "b.txt"));
}

TEST_F(RunFoldersTest, TheNameOfTheLastRunsFolderIsForgotten) {
  AddFolder("C:\\Src\\Work");
  Run();
  Put("C:\\Top\\b.txt", "b");
  engine.settings.Entries.Clear();
  AddFolder("C:\\Top");
  Run();
  EXPECT_TRUE(machine.files.Exists("C:\\Backup\\b.txt"));
}

TEST_F(RunFoldersTest, ADriveRootGetsItsBackslashBackAndNoFolderOfItsOwn) {
  machine.files.AddDrive("D");
  Put("D:\\a.txt", "a");
  Put("D:\\Sub\\b.txt", "b");
  Add("D:\\*+++++*");
  std::string item;
  machine.loop.OnYield(7, [&] { item = engine.run.SourceCaption; });
  Run();
  EXPECT_EQ(item, "D:\\");
  EXPECT_THAT(machine.files.Names("C:\\Backup"), ElementsAre("a.txt", "Sub"));
  EXPECT_EQ(engine.run.DriveText.Get(), "0");
}

TEST_F(RunFoldersTest, AFolderWithANameOfOneLetterGoesToTheDefaultFolder) {
  Put("C:\\Src\\x\\a.txt", "a");
  AddFolder("C:\\Src\\x");
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Backup"), ElementsAre("Default Folder"));
}

TEST_F(RunFoldersTest, AnExistingSubFolderIsMergedInto) {
  Put("C:\\Src\\Work\\a.txt", "a");
  Put("C:\\Backup\\Work\\old.txt", "old");
  AddFolder("C:\\Src\\Work");
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Backup\\Work"), ElementsAre("a.txt", "old.txt"));
}

TEST_F(RunFoldersTest, AMissingDestinationTakesNothingAndSaysNothing) {
  Put("C:\\Src\\Work\\a.txt", "a");
  AddFolder("C:\\Src\\Work");
  engine.run.RunDestination = "Z:\\Gone";
  Run();
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
  EXPECT_THAT(Status(), HasSubstr("Success >> Copied 1 Items"));
}

TEST_F(RunFoldersTest, TheCopyOfAFolderThatListingsLeaveOutHasItsRealNameToo) {
  for (const auto& [name, attributes] :
       {std::pair{"Hidden", attribute::kHidden}, {"System", attribute::kSystem}}) {
    const Path folder = std::string("C:\\Src\\") + name;
    Put(folder + "\\a.txt", "a");
    machine.files.Find(folder)->flags = attributes;
  }
  Add("C:\\SRC\\HIDDEN\\*+++++*");
  Add("C:\\SRC\\SYSTEM\\*+++++*");
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Backup"), ElementsAre("Hidden", "System"));
}

TEST_F(RunFoldersTest, AFolderWithoutANameIsPassedOver) {
  Put("C:\\Src\\Work\\a.txt", "a");
  Add("\\*+++++*");
  AddFolder("C:\\Src\\Work");
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Backup"), ElementsAre("Work"));
}

// --- what the modes do with folders

class OneWayModesTest : public RunFoldersTest, public ::testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    if (GetParam()) engine.settings.BackupMode.Incremental = true;
    AddFolder("C:\\Src\\Work");
  }
};

TEST_P(OneWayModesTest, TheDestinationTakesWhatIsNewOrNewer) {
  Put("C:\\Src\\Work\\newer.txt", "one", kNoon + 1);
  Put("C:\\Backup\\Work\\newer.txt", "two", kNoon);
  Put("C:\\Src\\Work\\size.txt", "one");
  Put("C:\\Backup\\Work\\size.txt", "three");
  Put("C:\\Src\\Work\\same.txt", "one");
  Put("C:\\Backup\\Work\\same.txt", "two");
  Run();
  EXPECT_EQ(machine.files.Content("C:\\Backup\\Work\\newer.txt"), "one");
  EXPECT_EQ(machine.files.Content("C:\\Backup\\Work\\size.txt"), "one");
  EXPECT_EQ(machine.files.Content("C:\\Backup\\Work\\same.txt"), "two");
}

TEST_P(OneWayModesTest, TheSourceIsNeverWritten) {
  Put("C:\\Src\\Work\\older.txt", "one", kNoon);
  Put("C:\\Backup\\Work\\older.txt", "two", kNoon + 1);
  Put("C:\\Backup\\Work\\alone.txt", "two");
  Put("C:\\Backup\\Work\\Alone\\deep.txt", "two");
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Src\\Work"), ElementsAre("older.txt"));
  EXPECT_EQ(machine.files.Content("C:\\Src\\Work\\older.txt"), "one");
  EXPECT_EQ(machine.files.Content("C:\\Backup\\Work\\older.txt"), "two");
}

TEST_P(OneWayModesTest, AttributesDecideNothingAndStay) {
  Put("C:\\Src\\Work\\a.txt", "a");
  machine.files.SetAttributes("C:\\Src\\Work\\a.txt", 0);
  Put("C:\\Src\\Work\\b.txt", "b");
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Backup\\Work"), ElementsAre("a.txt", "b.txt"));
  EXPECT_EQ(machine.files.Attributes("C:\\Src\\Work\\b.txt"), 32);
}

INSTANTIATE_TEST_SUITE_P(Modes, OneWayModesTest, ::testing::Values(false, true),
                         [](const auto& test) { return test.param ? "Incremental" : "Complete"; });

class TwoWayModeTest : public RunFoldersTest {
 protected:
  TwoWayModeTest() {
    engine.settings.BackupMode.Sync = true;
    AddFolder("C:\\Src\\Work");
  }
};

TEST_F(TwoWayModeTest, TheFolderIsKeptInStepWithTheDestinationItself) {
  Put("C:\\Src\\Work\\a.txt", "one");
  Put("C:\\Backup\\b.txt", "two");
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Src\\Work"), ElementsAre("a.txt", "b.txt"));
  EXPECT_THAT(machine.files.Names("C:\\Backup"), ElementsAre("a.txt", "b.txt"));
  EXPECT_EQ(machine.files.CallsOf("CreateFolder"), 0);
}

TEST_F(TwoWayModeTest, AFolderThatOnlyTheDestinationHasComesOver) {
  Put("C:\\Backup\\Only\\Deep\\c.txt", "two");
  Run();
  EXPECT_EQ(machine.files.Content("C:\\Src\\Work\\Only\\Deep\\c.txt"), "two");
}

TEST_F(TwoWayModeTest, TheNewerSideWinsByASecond) {
  Put("C:\\Src\\Work\\a.txt", "one", kNoon);
  Put("C:\\Backup\\a.txt", "two", kNoon + 1);
  Put("C:\\Src\\Work\\b.txt", "one", kNoon + 1);
  Put("C:\\Backup\\b.txt", "two", kNoon);
  Run();
  EXPECT_EQ(machine.files.Content("C:\\Src\\Work\\a.txt"), "two");
  EXPECT_EQ(machine.files.Content("C:\\Backup\\b.txt"), "one");
}

TEST_F(TwoWayModeTest, AtEqualTimesAnotherSizeGoesFromTheListedFolder) {
  Put("C:\\Src\\Work\\a.txt", "one");
  Put("C:\\Backup\\a.txt", "three");
  Run();
  EXPECT_EQ(machine.files.Content("C:\\Backup\\a.txt"), "one");
}

TEST_F(TwoWayModeTest, TheFolderCaptionsOfTheOtherModesDoNotCome) {
  std::vector<std::string> sources;
  engine.run.SourceCaption.Changed.Listen([&] { sources.push_back(engine.run.SourceCaption); });
  Run();
  EXPECT_THAT(sources, ElementsAre("Folder Has Been Fully Synchronized >> Finished "));
}

// --- the radios are read one by one

TEST_F(RunFoldersTest, WithNoModeChosenTheSubFolderIsMadeAndStaysEmpty) {
  Put("C:\\Src\\Work\\a.txt", "a");
  AddFolder("C:\\Src\\Work");
  engine.settings.BackupMode.Complete = false;
  Run();
  EXPECT_THAT(machine.files.Names("C:\\Backup\\Work"), IsEmpty());
}

TEST_F(RunFoldersTest, FoldersAreSyncedThoughTheSyncFlagIsSetAlone) {
  Put("C:\\Src\\Work\\a.txt", "a");
  Put("C:\\Backup\\b.txt", "b");
  AddFolder("C:\\Src\\Work");
  engine.settings.SyncroFlag = true;
  Run();
  EXPECT_FALSE(machine.files.Exists("C:\\Src\\Work\\b.txt"));
  EXPECT_TRUE(machine.files.Exists("C:\\Backup\\Work\\a.txt"));
}

TEST_F(RunFoldersTest, FilesOfFoldersAreNotCounted) {
  Put("C:\\Src\\Work\\a.txt", "a");
  machine.files.ReportLength("C:\\Src\\Work\\a.txt", 5 << 20);
  AddFolder("C:\\Src\\Work");
  engine.settings.AutoReport = true;
  std::int32_t total = -1;
  engine.stages.SendReport = [&](const RunFacts& facts) { total = facts.total_bytes; };
  Run();
  EXPECT_EQ(total, 0);
}

TEST_F(RunFoldersTest, ItemsThatAreNoFoldersArePassedOver) {
  AddFile("C:\\Src\\a.txt", "a");
  machine.files.Write("C:\\Few\\f.txt", "f");
  Add("C:\\Few\\*.*");
  Run();
  EXPECT_THAT(machine.files.Calls(), Not(Contains(HasSubstr("CreateFolder "))));
  EXPECT_EQ(machine.files.CallsOf("CopyTree"), 0);
}

}  // namespace
}  // namespace tarnvale::testing
