// Operations that end early.
#include "tests/codec/archive_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ArchiveFailuresTest : public ArchiveFixture {
 protected:
  // Extracts a bare container of these bytes; the error number.
  int Extracting(const std::string& container) {
    files.Write(archive, container);
    return RaisedBy([&] { archiver.ExtractFilesFromArchiv(archive, "C:\\Out", false); });
  }

  Path out = "C:\\Out";
};

TEST_F(ArchiveFailuresTest, AMissingArchiveShowsABoxAndExtractsNothing) {
  machine.boxes.Expect("The archive does not exist!", BoxIcon::kStop, BoxAnswer::kOk);
  reported.clear();
  EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, out, true), 0);
  EXPECT_THAT(reported, ElementsAre("status 10"));
}

TEST_F(ArchiveFailuresTest, ReadingAMissingArchiveShowsABoxInCapitals) {
  machine.boxes.Expect("The Archive Does Not Exist!", BoxIcon::kStop, BoxAnswer::kOk);
  reported.clear();
  archiver.ReadFiles(archive, true);
  EXPECT_THAT(reported, ElementsAre("status 18"));
}

TEST_F(ArchiveFailuresTest, ExtractingOneOfAMissingArchiveShowsABoxAndLeavesTheFolderAlone) {
  machine.boxes.Expect("The Archive Does Not Exist!", BoxIcon::kStop, BoxAnswer::kOk);
  reported.clear();
  archiver.ExtractFile(archive, "a", out, true);
  EXPECT_THAT(reported, ElementsAre("status 19"));
  EXPECT_EQ(out, "C:\\Out");
}

TEST_F(ArchiveFailuresTest, AHiddenArchiveCountsAsMissing) {
  files.Write(archive, "HE0\rx");
  files.SetAttributes(archive, attribute::kHidden);
  machine.boxes.Expect("The Archive Does Not Exist!", BoxIcon::kStop, BoxAnswer::kOk);
  archiver.ReadFiles(archive, true);
}

TEST_F(ArchiveFailuresTest, TheBoxHasTheProgramsTitle) {
  machine.boxes.Answer(BoxAnswer::kOk);
  archiver.ReadFiles(archive, true);
  ASSERT_EQ(machine.boxes.Shown().size(), 1U);
  EXPECT_EQ(machine.boxes.Shown()[0].title, "Tarnvale");
  EXPECT_EQ(machine.boxes.Shown()[0].buttons, BoxButtons::kOk);
}

TEST_F(ArchiveFailuresTest, WithoutAFreeNumberNothingIsPacked) {
  const Path file = "C:\\Data\\a";
  files.Write(file, "x");
  for (int number = 256; number <= 511; ++number) machine.open_files.OpenInput(number, file);
  EXPECT_EQ(RaisedBy([&] { archiver.SaveFilesToArchiv("C:\\Data", archive, false); }), 67);
  EXPECT_FALSE(files.Exists(archive));
  machine.open_files.Close(256);
  machine.open_files.Close(511);
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data", archive, false), 1);
}

TEST_F(ArchiveFailuresTest, AnEmptyTreeCountsOneRecordWithoutANameAndFailsToOpenTheRoot) {
  files.MakeFolder("C:\\Data\\sub");
  reported.clear();
  EXPECT_EQ(RaisedBy([&] { archiver.SaveFilesToArchiv("C:\\Data", archive, false); }), 75);
  EXPECT_THAT(reported, ElementsAre("status 9", "status 7", "status 8", "status 3"));
  EXPECT_EQ(files.Content(archive), std::string("\1\0\0\0\0\0", 6));
  EXPECT_EQ(machine.open_files.OpenCount(), 1);
}

TEST_F(ArchiveFailuresTest, AMissingRootFailsAlike) {
  EXPECT_NE(RaisedBy([&] { archiver.SaveFilesToArchiv("C:\\Missing\\deep", archive, true); }), 0);
  EXPECT_FALSE(files.Exists(archive));
}

TEST_F(ArchiveFailuresTest, AFileThatCannotBeOpenedEndsBuildingAndTheStageFileStays) {
  files.Write("C:\\Data\\a", "1");
  files.Write("C:\\Data\\b", "2");
  machine.open_files.FailOn("OpenBinary", "C:\\Data\\b", 70);
  reported.clear();
  EXPECT_EQ(RaisedBy([&] { archiver.SaveFilesToArchiv("C:\\Data", archive, true); }), 70);
  EXPECT_THAT(reported, ElementsAre("status 9", "status 7", "status 8", "status 3",
                                    "adding a in C:\\Data\\ 1", "build 50"));
  EXPECT_EQ(files.Content(stage), Number32(2) + Record("a", "1") + Number16(1) + "b");
  EXPECT_FALSE(files.Exists(archive));
  // What was open stays open.
  EXPECT_EQ(machine.open_files.OpenCount(), 1);
}

TEST_F(ArchiveFailuresTest, ASourceIsClosedBeforeItsBytesAreWritten) {
  files.Write("C:\\Data\\large", std::string(1000000, 'x'));
  machine.open_files.FailNext("Write", 61);
  EXPECT_EQ(RaisedBy([&] { archiver.SaveFilesToArchiv("C:\\Data", archive, true); }), 61);
  EXPECT_EQ(machine.open_files.OpenCount(), 1);
  files.Delete("C:\\Data\\large");
}

TEST_F(ArchiveFailuresTest, BytesThatCouldNotBeWrittenAreNotTriedAgain) {
  files.Write("C:\\Data\\a", "1");
  machine.open_files.FailNext("Write", 61);
  EXPECT_EQ(RaisedBy([&] { archiver.SaveFilesToArchiv("C:\\Data", archive, false); }), 61);
  EXPECT_EQ(machine.open_files.CallsOf("Write"), 1);
}

TEST_F(ArchiveFailuresTest, ADamagedStreamExtractsNothing) {
  files.Write(archive, "HE1\rx");
  reported.clear();
  EXPECT_EQ(RaisedBy([&] { archiver.ExtractFilesFromArchiv(archive, out, true); }),
            kProgramDefinedError);
  EXPECT_THAT(reported, ElementsAre("status 10", "status 12"));
  EXPECT_FALSE(files.Exists(stage));
  EXPECT_FALSE(files.Exists("C:\\Out"));
}

TEST_F(ArchiveFailuresTest, ReadingACompressedArchiveAsABareOneRaisesAFileError) {
  files.Write("C:\\Data\\a", "1");
  archiver.SaveFilesToArchiv("C:\\Data", archive, true);
  EXPECT_EQ(RaisedBy([&] { archiver.ReadFiles(archive, false); }), 62);
}

TEST_F(ArchiveFailuresTest, AContainerThatEndsEarlyRaises62) {
  const std::string whole = Number32(1) + Record("a", "data");
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(Extracting(whole.substr(0, length)), 62) << length;
  }
  EXPECT_EQ(Extracting(whole), 0);
}

TEST_F(ArchiveFailuresTest, ALengthThatTheContainerHasNotRaises62) {
  EXPECT_EQ(Extracting(Number32(1) + Number16(32767) + "a"), 62);
  EXPECT_EQ(Extracting(Number32(1) + Number16(1) + "a" + Number32(2147483647) + "data"), 62);
}

TEST_F(ArchiveFailuresTest, AContainerThatGetsShorterWhileItIsReadRaises62) {
  for (const std::size_t size_bytes : {300000U, 900000U}) {
    const Path container = "C:\\Store\\" + std::to_string(size_bytes);
    const std::string whole =
        Number32(2) + Record("a", "1") + Record("b", std::string(size_bytes, 'b'));
    files.Write(container, whole);
    machine.loop.OnYield(1, [&] { files.Write(container, whole.substr(0, 20)); });
    EXPECT_EQ(RaisedBy([&] { archiver.ReadFiles(container, false); }), 62) << size_bytes;
    EXPECT_EQ(reported.back(), "entry a 1");
  }
}

TEST_F(ArchiveFailuresTest, ANegativeLengthRaises5) {
  EXPECT_EQ(Extracting(Number32(1) + Number16(-1) + "a"), 5);
  EXPECT_EQ(Extracting(Number32(1) + Number16(1) + "a" + Number32(-1) + "data"), 5);
}

TEST_F(ArchiveFailuresTest, ANumberOfRecordsBelow1ExtractsNothing) {
  files.Write(archive, Number32(0));
  EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, out, false), 0);
  files.Write(archive, Number32(-5));
  EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, out, false), -5);
  EXPECT_FALSE(files.Exists("C:\\Out"));
}

TEST_F(ArchiveFailuresTest, EntriesBeforeADamagedOneAreWritten) {
  EXPECT_EQ(Extracting(Number32(2) + Record("a", "1") + Number16(5) + "b"), 62);
  EXPECT_EQ(files.Content("C:\\Out\\a"), "1");
  EXPECT_EQ(reported.back(), "extract 50");
}

TEST_F(ArchiveFailuresTest, ANameWithParentFoldersWritesOutsideTheTarget) {
  EXPECT_EQ(Extracting(Number32(1) + Record("..\\Elsewhere\\a", "1")), 0);
  EXPECT_EQ(files.Content("C:\\Elsewhere\\a"), "1");
}

TEST_F(ArchiveFailuresTest, ANameWithADriveFails) {
  EXPECT_EQ(Extracting(Number32(1) + Record("D:\\a", "1")), 76);
  EXPECT_EQ(Extracting(Number32(1) + Record("sub\\D:\\a", "1")), 76);
  EXPECT_FALSE(files.Exists("C:\\Out"));
}

TEST_F(ArchiveFailuresTest, AReadOnlyFileInTheWayEndsTheExtraction) {
  files.Write("C:\\Out\\a", "old");
  files.SetAttributes("C:\\Out\\a", attribute::kReadOnly);
  EXPECT_EQ(Extracting(Number32(1) + Record("a", "new")), 75);
  EXPECT_EQ(files.Content("C:\\Out\\a"), "old");
}

TEST_F(ArchiveFailuresTest, ATooLongNameRaises6) {
  const std::string part(32768, 'n');
  files.Write("C:\\Data\\" + part, "1");
  EXPECT_EQ(RaisedBy([&] { archiver.SaveFilesToArchiv("C:\\Data", archive, false); }), 6);
}

}  // namespace
}  // namespace tarnvale::testing
