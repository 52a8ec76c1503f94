#include "codec/archive.h"

#include <algorithm>
#include <utility>

#include "tests/codec/archive_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ArchiveTest : public ArchiveFixture {
 protected:
  // Two files, one of them in a folder.
  void MakeTree() {
    files.Write("C:\\Data\\a.txt", "hi");
    files.Write("C:\\Data\\sub\\b.txt", "hello");
  }
  const std::string two_records =
      Number32(2) + Record("a.txt", "hi") + Record("sub\\b.txt", "hello");
};

TEST_F(ArchiveTest, IsReadyFromItsCreationOn) {
  EXPECT_THAT(reported, ElementsAre("status 0"));
}

TEST_F(ArchiveTest, ASingleFileGivesTheContainersFieldsInOrder) {
  files.Write("C:\\Data\\a.txt", "hi");
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data", archive, false), 1);
  EXPECT_EQ(files.Content(archive), std::string("\x01\x00\x00\x00"      // 1 record
                                                "\x05\x00"              // 5 characters
                                                "\x61\x2E\x74\x78\x74"  // a.txt
                                                "\x02\x00\x00\x00"      // 2 bytes
                                                "\x68\x69",             // hi
                                                17));
}

TEST_F(ArchiveTest, ASingleFileGivesTheDocumentedArchive) {
  files.Write("C:\\Data\\a.txt", "hi");
  archiver.SaveFilesToArchiv("C:\\Data", archive, true);
  EXPECT_EQ(files.Content(archive),
            std::string("HE3\r"
                        "\x30"              // checksum
                        "\x11\x00\x00\x00"  // 17 bytes of container
                        "\x0A\x00"          // 10 symbols
                        "\x00\x01\x01\x05\x02\x05\x05\x04"
                        ".\x04"
                        "a\x04"
                        "h\x04"
                        "i\x04"
                        "t\x04"
                        "x\x04"
                        "\x62\xF8\xDB\xE9\x2C"           // codes
                        "\x11\x6F\x2F\x2B\x03\xA6\x01",  // payload
                        43));
}

TEST_F(ArchiveTest, SavingWithoutCompressionRaisesStatus14TwiceAndNoCompressionDone) {
  MakeTree();
  reported.clear();
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data", archive, false), 2);
  EXPECT_THAT(reported, ElementsAre("status 9", "status 7", "status 8", "status 3",
                                    "adding a.txt in C:\\Data\\ 2", "build 50",
                                    "adding b.txt in C:\\Data\\sub\\ 5", "build 100", "status 4",
                                    "status 14", "status 14"));
  EXPECT_EQ(files.Content(archive), two_records);
  EXPECT_FALSE(files.Exists(stage));
}

TEST_F(ArchiveTest, SavingWithCompressionReportsItsStepsInOrder) {
  MakeTree();
  reported.clear();
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data", archive, true), 2);
  const auto archive_size = std::to_string(files.Content(archive).size());
  EXPECT_THAT(reported, ElementsAre("status 9", "status 7", "status 8", "status 3",
                                    "adding a.txt in C:\\Data\\ 2", "build 50",
                                    "adding b.txt in C:\\Data\\sub\\ 5", "build 100", "status 4",
                                    "status 1", "compress 7", "compress 12", "compress 100",
                                    "sizes 37 " + archive_size, "status 2", "status 14"));
  EXPECT_EQ(files.Content(archive).substr(0, 4), "HE3\r");
  EXPECT_FALSE(files.Exists(stage));
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
}

TEST_F(ArchiveTest, TheSizesReportedAreThoseOfTheTwoFilesTheContainerFirst) {
  MakeTree();
  std::int32_t container_size = 0;
  std::int32_t archive_size = 0;
  archiver.CompressionDone.Listen([&](std::int32_t container, std::int32_t packed) {
    container_size = container;
    archive_size = packed;
    // The stage file goes after this.
    EXPECT_EQ(files.Content(stage), two_records);
  });
  archiver.SaveFilesToArchiv("C:\\Data", archive, true);
  EXPECT_EQ(container_size, static_cast<int>(two_records.size()));
  EXPECT_EQ(archive_size, static_cast<int>(files.Content(archive).size()));
  EXPECT_GT(archive_size, container_size);
}

TEST_F(ArchiveTest, SavingYieldsOnceAFileAroundTheCodecAtItsReportsAndAtTheEnd) {
  MakeTree();
  EXPECT_EQ(YieldsDuring([&] { archiver.SaveFilesToArchiv("C:\\Data", archive, false); }), 2 + 1);
  // Three reports of the codec.
  EXPECT_EQ(YieldsDuring([&] { archiver.SaveFilesToArchiv("C:\\Data", archive, true); }),
            2 + 1 + 3 + 1 + 1);
}

TEST_F(ArchiveTest, ExtractingReportsItsStepsInOrder) {
  MakeTree();
  archiver.SaveFilesToArchiv("C:\\Data", archive, true);
  reported.clear();
  EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, "C:\\Out", true), 2);
  EXPECT_THAT(reported,
              ElementsAre("status 10", "status 12", "decompress 89", "decompress 100", "status 13",
                          "status 11", "status 5", "extracting a.txt to C:\\Out\\ 2", "extract 50",
                          "extracting b.txt to C:\\Out\\sub\\ 5", "extract 100", "status 6"));
  EXPECT_FALSE(files.Exists(stage));
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
}

TEST_F(ArchiveTest, ExtractingABareContainerLeavesOutTheDecompression) {
  files.Write(archive, two_records);
  reported.clear();
  EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, "C:\\Out\\", false), 2);
  EXPECT_THAT(
      reported,
      ElementsAre("status 10", "status 11", "status 5", "extracting a.txt to C:\\Out\\ 2",
                  "extract 50", "extracting b.txt to C:\\Out\\sub\\ 5", "extract 100", "status 6"));
  EXPECT_EQ(files.Content(archive), two_records);
}

TEST_F(ArchiveTest, ATreeRestoresToTheSamePathsWithoutHiddenFilesAndEmptyFolders) {
  MakeTree();
  files.Write("C:\\Data\\sub\\deep\\c.bin", std::string("\0\xFF\r\n", 4));
  files.Write("C:\\Data\\empty.txt", "");
  files.Write("C:\\Data\\hidden.txt", "secret");
  files.SetAttributes("C:\\Data\\hidden.txt", attribute::kHidden);
  files.Write("C:\\Data\\system.txt", "secret");
  files.SetAttributes("C:\\Data\\system.txt", attribute::kSystem);
  files.Write("C:\\Data\\locked.txt", "read-only");
  files.SetAttributes("C:\\Data\\locked.txt", attribute::kReadOnly);
  files.MakeFolder("C:\\Data\\nothing");
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data\\", archive, true), 5);
  archiver.ExtractFilesFromArchiv(archive, "C:\\Out", true);
  EXPECT_THAT(files.Names("C:\\Out"), ElementsAre("a.txt", "empty.txt", "locked.txt", "sub"));
  EXPECT_EQ(files.Content("C:\\Out\\a.txt"), "hi");
  EXPECT_EQ(files.Content("C:\\Out\\empty.txt"), "");
  EXPECT_EQ(files.Content("C:\\Out\\locked.txt"), "read-only");
  EXPECT_EQ(files.Content("C:\\Out\\sub\\b.txt"), "hello");
  EXPECT_EQ(files.Content("C:\\Out\\sub\\deep\\c.bin"), std::string("\0\xFF\r\n", 4));
}

TEST_F(ArchiveTest, ExtractingReplacesAnOldFileWhole) {
  files.Write(archive, Number32(1) + Record("a.txt", "new"));
  files.Write("C:\\Out\\a.txt", "old and long");
  archiver.ExtractFilesFromArchiv(archive, "C:\\Out", false);
  EXPECT_EQ(files.Content("C:\\Out\\a.txt"), "new");
}

TEST_F(ArchiveTest, AFileOfAnotherEntryInAFolderIsNotReplaced) {
  files.AddDrive("W");
  files.DistinguishCase("W");
  files.Write(archive, Number32(2) + Record("sub\\a.txt", "one") + Record("sub\\A.txt", "two"));
  files.Write("W:\\sub\\A.txt", "old");
  archiver.ExtractFilesFromArchiv(archive, "W:\\", false);
  EXPECT_THAT(files.Names("W:\\sub"), ElementsAre("A.txt", "a.txt"));
  EXPECT_EQ(files.Content("W:\\sub\\a.txt"), "one");
  EXPECT_EQ(files.Content("W:\\sub\\A.txt"), "two");
}

TEST_F(ArchiveTest, AFileOfNoBytesHasARecordOfNone) {
  files.Write("C:\\Data\\empty", "");
  archiver.SaveFilesToArchiv("C:\\Data", archive, false);
  EXPECT_EQ(files.Content(archive), Number32(1) + Record("empty", ""));
}

TEST_F(ArchiveTest, LargeAndSmallFilesStandSideBySide) {
  std::string large(700000, 'x');
  for (std::size_t i = 0; i < large.size(); i += 3) large[i] = static_cast<char>(i / 3);
  const std::string full(256 * 1024, 'y');
  files.Write("C:\\Data\\a", "small");
  files.Write("C:\\Data\\b", large);
  files.Write("C:\\Data\\c", full);
  files.Write("C:\\Data\\d", "end");
  archiver.SaveFilesToArchiv("C:\\Data", archive, false);
  EXPECT_TRUE(files.Content(archive) == Number32(4) + Record("a", "small") + Record("b", large) +
                                            Record("c", full) + Record("d", "end"));
  archiver.ExtractFilesFromArchiv(archive, "C:\\Out", false);
  EXPECT_TRUE(files.Content("C:\\Out\\b") == large);
  EXPECT_TRUE(files.Content("C:\\Out\\c") == full);
  EXPECT_EQ(files.Content("C:\\Out\\d"), "end");
}

TEST_F(ArchiveTest, BuildingShowsTheFloorOfAQuotientInDoublePrecision) {
  for (int i = 0; i < 100; ++i) {
    files.Write("C:\\Data\\" + std::to_string(100 + i), "x");
  }
  std::vector<int> percents;
  archiver.BuildArchiveProgress.Listen([&](std::int16_t percent) { percents.push_back(percent); });
  archiver.SaveFilesToArchiv("C:\\Data", archive, false);
  ASSERT_EQ(percents.size(), 100U);
  EXPECT_EQ(percents[27], 28);
  // 29 / 100 * 100 is a little less than 29.
  EXPECT_EQ(percents[28], 28);
  EXPECT_EQ(percents[99], 100);
}

TEST_F(ArchiveTest, ALeftStageFileIsWrittenOverAndItsLongerTailStays) {
  files.Write("C:\\Data\\a.txt", "hi");
  files.Write(stage, std::string(30, 'z'));
  std::string container;
  archiver.CompressionDone.Listen(
      [&](std::int32_t, std::int32_t) { container = files.Content(stage); });
  archiver.SaveFilesToArchiv("C:\\Data", archive, true);
  EXPECT_EQ(container, Number32(1) + Record("a.txt", "hi") + std::string(13, 'z'));
  EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, "C:\\Out", true), 1);
}

TEST_F(ArchiveTest, AnOldArchiveIsDeletedBeforeBuildingBegins) {
  files.Write("C:\\Data\\a.txt", "hi");
  files.Write(archive, std::string(1000, 'x'));
  archiver.StatusChange.Listen([&](ArchiveStatus status) {
    if (status == ArchiveStatus::kEnumerated) {
      EXPECT_TRUE(files.Exists(archive));
    }
    if (status == ArchiveStatus::kBuilding) {
      EXPECT_FALSE(files.Exists(archive));
    }
  });
  archiver.SaveFilesToArchiv("C:\\Data", archive, false);
  EXPECT_EQ(files.Content(archive).size(), 17U);
}

TEST_F(ArchiveTest, ReadingReportsEachEntryInOrder) {
  MakeTree();
  archiver.SaveFilesToArchiv("C:\\Data", archive, true);
  reported.clear();
  archiver.ReadFiles(archive, true);
  EXPECT_THAT(reported, ElementsAre("status 18", "status 17", "list 89", "list 100", "status 15",
                                    "entry a.txt 2", "entry sub\\b.txt 5", "status 16"));
  EXPECT_FALSE(files.Exists(stage));
}

TEST_F(ArchiveTest, ReadingABareContainerLeavesItWhereItIs) {
  files.Write(archive, two_records);
  reported.clear();
  EXPECT_EQ(YieldsDuring([&] { archiver.ReadFiles(archive, false); }), 2);
  EXPECT_THAT(reported, ElementsAre("status 18", "status 15", "entry a.txt 2", "entry sub\\b.txt 5",
                                    "status 16"));
  EXPECT_EQ(files.Content(archive), two_records);
}

TEST_F(ArchiveTest, DeCompressArchiveIsOneDecoding) {
  files.Write(archive, "HE0\rno container at all");
  reported.clear();
  archiver.DeCompressArchive(archive, "C:\\Store\\plain");
  EXPECT_EQ(files.Content("C:\\Store\\plain"), "no container at all");
  EXPECT_THAT(reported, IsEmpty());
  files.Write("C:\\Data\\a.txt", "hi");
  archiver.SaveFilesToArchiv("C:\\Data", archive, true);
  reported.clear();
  EXPECT_EQ(YieldsDuring([&] { archiver.DeCompressArchive(archive, "C:\\Store\\plain"); }), 2);
  EXPECT_THAT(reported, ElementsAre("request 89", "request 100"));
  EXPECT_EQ(files.Content("C:\\Store\\plain"), Number32(1) + Record("a.txt", "hi"));
}

TEST_F(ArchiveTest, RunsAnOperationWithinAnother) {
  MakeTree();
  archiver.SaveFilesToArchiv("C:\\Data", "C:\\Store\\other.tvz", true);
  bool nested = false;
  // During a report of the first codec a second one takes its place.
  archiver.CompressArchiveProgress.Listen([&](std::int16_t percent) {
    if (percent != 12 || std::exchange(nested, true)) return;
    reported.push_back("nested");
    archiver.SaveFilesToArchiv("C:\\Data", "C:\\Store\\b.tvz", true);
    reported.push_back("outer");
  });
  archiver.SaveFilesToArchiv("C:\\Data", archive, true);
  ASSERT_TRUE(nested);
  EXPECT_EQ(files.Content(archive), files.Content("C:\\Store\\other.tvz"));
  EXPECT_EQ(files.Content("C:\\Store\\b.tvz"), files.Content("C:\\Store\\other.tvz"));
  // The first codec's later report reaches nobody any more.
  const auto outer = std::find(reported.begin(), reported.end(), "outer");
  EXPECT_EQ(std::count(outer, reported.end(), "compress 100"), 0);
}

TEST_F(ArchiveTest, NamesAreInTheSystemsCodePage) {
  machine.open_files.UseWesternCodePage();
  files.Write("C:\\Data\\\xC3\xBC", "1");
  files.Write("C:\\Data\\\xD0\x96", "2");
  archiver.SaveFilesToArchiv("C:\\Data", archive, false);
  EXPECT_EQ(files.Content(archive),
            Number32(2) + Record("\xFC", "1") + Record("\xEF\xBB\xBF\xD0\x96", "2"));
  archiver.ExtractFilesFromArchiv(archive, "C:\\Back", false);
  EXPECT_EQ(files.Content("C:\\Back\\\xC3\xBC"), "1");
  EXPECT_EQ(files.Content("C:\\Back\\\xD0\x96"), "2");
}

class ReadAheadCalls : public Workers {
 public:
  std::size_t Helpers() override { return 0; }
  void Run(std::size_t, const std::function<void()>& work) override { work(); }
  void LetOthersRun() override {}
  std::optional<std::span<const std::uint8_t>> TakeRead(const Path&) override { return {}; }
  void ReadAhead(std::vector<Path> files) override { calls.push_back(std::move(files)); }

  std::vector<std::vector<Path>> calls;
};

TEST_F(ArchiveTest, FilesAreReadAheadSomeHundredsAtATimeAndEachOnce) {
  std::vector<Path> all;
  for (int i = 1000; i < 1600; ++i) all.push_back("C:\\Data\\" + std::to_string(i));
  for (const Path& file : all) files.Write(file, "x");
  ReadAheadCalls workers;
  usercontrol11 packer(ArchiveParts(machine.Interfaces(), workers));
  packer.SaveFilesToArchiv("C:\\Data", archive, false);
  std::vector<Path> read;
  std::vector<std::size_t> counts;
  for (const std::vector<Path>& call : workers.calls) {
    counts.push_back(call.size());
    read.insert(read.end(), call.begin(), call.end());
  }
  EXPECT_THAT(counts, ElementsAre(256, 256, 88, 0, 0));
  EXPECT_EQ(read, all);
}

}  // namespace
}  // namespace tarnvale::testing
