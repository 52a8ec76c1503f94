// Extracting one entry, and what stays behind.
#include "tests/codec/archive_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class ArchiveSingleTest : public ArchiveFixture {
 protected:
  ArchiveSingleTest() {
    files.Write("C:\\Data\\a.txt", "hi");
    files.Write("C:\\Data\\sub\\b.txt", "hello");
    archiver.SaveFilesToArchiv("C:\\Data", archive, true);
    reported.clear();
  }

  Path out = "C:\\Out";
};

TEST_F(ArchiveSingleTest, WritesOneEntryAndReportsItsStepsInOrder) {
  archiver.ExtractFile(archive, "sub\\b.txt", out, true);
  EXPECT_THAT(reported, ElementsAre("status 19", "status 20", "single 89", "single 100",
                                    "status 21", "status 22"));
  EXPECT_EQ(files.Content("C:\\Out\\sub\\b.txt"), "hello");
  EXPECT_THAT(files.Names("C:\\Out"), ElementsAre("sub"));
}

TEST_F(ArchiveSingleTest, TheCallerSeesTheFolderWithABackslash) {
  archiver.ExtractFile(archive, "a.txt", out, true);
  EXPECT_EQ(out, "C:\\Out\\");
}

TEST_F(ArchiveSingleTest, FindsANameInOtherCase) {
  archiver.ExtractFile(archive, "SUB\\B.TXT", out, true);
  // The entry's own name is written.
  EXPECT_THAT(files.Names("C:\\Out\\sub"), ElementsAre("b.txt"));
}

TEST_F(ArchiveSingleTest, FindsLettersOfAllAlphabetsInOtherCase) {
  files.Write("C:\\Store\\one", Number32(1) + Record("Grüße.txt", "hello"));
  archiver.ExtractFile("C:\\Store\\one", "GRÜßE.TXT", out, false);
  EXPECT_EQ(files.Content("C:\\Out\\Grüße.txt"), "hello");
}

TEST_F(ArchiveSingleTest, AFileOfAnotherEntryIsNotReplaced) {
  machine.files.AddDrive("W");
  machine.files.DistinguishCase("W");
  files.Write("C:\\Store\\two", Number32(2) + Record("a.txt", "second") + Record("A.txt", "first"));
  files.Write("W:\\A.txt", "of the other entry");
  out = "W:\\";
  archiver.ExtractFile("C:\\Store\\two", "A.TXT", out, false);
  EXPECT_THAT(files.Names("W:\\"), ElementsAre("A.txt", "a.txt"));
  EXPECT_EQ(files.Content("W:\\A.txt"), "of the other entry");
  EXPECT_EQ(files.Content("W:\\a.txt"), "second");
}

TEST_F(ArchiveSingleTest, AFileOfAnotherEntryBehindALongOneIsNotReplaced) {
  machine.files.AddDrive("W");
  machine.files.DistinguishCase("W");
  files.Write("C:\\Store\\three", Number32(3) + Record("a.txt", "second") +
                                      Record("long", std::string(600000, 'x')) +
                                      Record("A.txt", "first"));
  files.Write("W:\\A.txt", "of the other entry");
  out = "W:\\";
  archiver.ExtractFile("C:\\Store\\three", "a.txt", out, false);
  EXPECT_EQ(files.Content("W:\\A.txt"), "of the other entry");
  EXPECT_EQ(files.Content("W:\\a.txt"), "second");
}

TEST_F(ArchiveSingleTest, ANameWithADriveFails) {
  files.Write("C:\\Store\\one", Number32(1) + Record("D:\\a", "1"));
  EXPECT_EQ(RaisedBy([&] { archiver.ExtractFile("C:\\Store\\one", "D:\\a", out, false); }), 76);
  EXPECT_FALSE(files.Exists("C:\\Out"));
}

TEST_F(ArchiveSingleTest, ABareContainerWithoutTheNameIsClosedAndStays) {
  files.Write("C:\\Store\\one", Number32(1) + Record("a", "1"));
  archiver.ExtractFile("C:\\Store\\one", "b", out, false);
  EXPECT_TRUE(files.Exists("C:\\Store\\one"));
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
}

TEST_F(ArchiveSingleTest, TheFirstOfTwoEqualNamesWins) {
  files.Write("C:\\Store\\two", Number32(3) + Record("A.txt", "first") + Record("a.txt", "second") +
                                    Record("a.txt", "third"));
  archiver.ExtractFile("C:\\Store\\two", "a.txt", out, false);
  EXPECT_EQ(files.Content("C:\\Out\\a.txt"), "first");
}

TEST_F(ArchiveSingleTest, YieldsOnceForEachEntryThatIsNotTheOne) {
  files.Write("C:\\Store\\bare",
              Number32(3) + Record("a", "1") + Record("b", "2") + Record("c", "3"));
  EXPECT_EQ(YieldsDuring([&] { archiver.ExtractFile("C:\\Store\\bare", "c", out, false); }), 2);
}

TEST_F(ArchiveSingleTest, ANameThatIsNotThereWritesNothingAndLeavesNoStageFile) {
  archiver.ExtractFile(archive, "missing.txt", out, true);
  EXPECT_THAT(reported, ElementsAre("status 19", "status 20", "single 89", "single 100",
                                    "status 21", "status 22"));
  EXPECT_FALSE(files.Exists("C:\\Out"));
  EXPECT_FALSE(files.Exists(stage));
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
}

TEST_F(ArchiveSingleTest, AfterAnEntryWasFoundTheStageFileIsStillThereAndOpen) {
  archiver.ExtractFile(archive, "a.txt", out, true);
  EXPECT_TRUE(files.Exists(stage));
  EXPECT_EQ(machine.open_files.OpenCount(), 1);
}

TEST_F(ArchiveSingleTest, TheNextOperationsFailBecauseTheStageFileCannotBeDeleted) {
  archiver.ExtractFile(archive, "a.txt", out, true);
  reported.clear();
  Path again = "C:\\Again";
  EXPECT_EQ(RaisedBy([&] { archiver.ExtractFile(archive, "a.txt", again, true); }), 70);
  EXPECT_THAT(reported, ElementsAre("status 19", "status 20", "single 89", "single 100"));
  EXPECT_EQ(again, "C:\\Again");
  reported.clear();
  EXPECT_EQ(RaisedBy([&] { archiver.ReadFiles(archive, true); }), 70);
  EXPECT_THAT(reported, ElementsAre("status 18", "status 17", "list 89", "list 100"));
  reported.clear();
  EXPECT_EQ(RaisedBy([&] { archiver.ExtractFilesFromArchiv(archive, "C:\\Again", true); }), 70);
  EXPECT_THAT(reported, ElementsAre("status 10", "status 12", "decompress 89", "decompress 100"));
  EXPECT_FALSE(files.Exists("C:\\Again"));
}

TEST_F(ArchiveSingleTest, SavingOverItFailsOnlyWhenItsStageFileShouldGo) {
  archiver.ExtractFile(archive, "a.txt", out, true);
  reported.clear();
  EXPECT_EQ(RaisedBy([&] { archiver.SaveFilesToArchiv("C:\\Data", archive, true); }), 70);
  EXPECT_EQ(reported.back().substr(0, 6), "sizes ");
  EXPECT_TRUE(files.Exists(archive));
}

TEST_F(ArchiveSingleTest, OtherArchivesWorkMeanwhile) {
  archiver.ExtractFile(archive, "a.txt", out, true);
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data", "C:\\Store\\b.tvz", true), 2);
  EXPECT_EQ(archiver.ExtractFilesFromArchiv("C:\\Store\\b.tvz", "C:\\Again", true), 2);
}

TEST_F(ArchiveSingleTest, ABareContainerStaysOpenItselfAndCannotBeReplaced) {
  files.Write("C:\\Store\\bare", Number32(1) + Record("a", "1"));
  archiver.ExtractFile("C:\\Store\\bare", "a", out, false);
  EXPECT_EQ(RaisedBy([&] { archiver.SaveFilesToArchiv("C:\\Data", "C:\\Store\\bare", false); }),
            70);
}

}  // namespace
}  // namespace tarnvale::testing
