// The compressor packs, by hand and for a run, and shows it.
#include "compressor/compressor_window.h"

#include <gmock/gmock.h>

#include "tests/compressor/compressor_window_fixture.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using Kind = FakeDialogs::Kind;
using CompressorPackingTest = CompressorWindowTest;

// Compress, as a backup run calls it.

TEST_F(CompressorPackingTest, PacksTheStorageLocationIntoTheFixedNameWithoutShowingUp) {
  machine.Advance(200ms);
  window.Compress();
  EXPECT_TRUE(files.Exists("C:\\Store\\Auto Compressed.tvz"));
  EXPECT_THAT(files.Names("C:\\Store"), SizeIs(1));
  EXPECT_EQ(VisibleSteps(), packing_steps);
  EXPECT_FALSE(window.Visible);
  EXPECT_EQ(window.XP_ProgressBar1.Value, 100);
  Unpack("C:\\Store\\Auto Compressed.tvz", "C:\\Out");
  EXPECT_EQ(files.Content("C:\\Out\\sub\\b.txt"), "hello");
}

TEST_F(CompressorPackingTest, PacksWhatTheStorageLocationWasAtTheLastTick) {
  files.Write("C:\\Other\\c.txt", "new");
  machine.Advance(200ms);
  settings.DestinationDir = "C:\\Other";
  window.Compress();
  List("C:\\Store\\Auto Compressed.tvz");
  EXPECT_THAT(window.List1.Rows.Rows(), ElementsAre("a.txt", "sub\\b.txt"));
}

TEST_F(CompressorPackingTest, EachRunReplacesTheLastArchive) {
  machine.Advance(200ms);
  window.Compress();
  files.Remove("C:\\Data\\sub");
  window.Compress();
  List("C:\\Store\\Auto Compressed.tvz");
  EXPECT_THAT(window.List1.Rows.Rows(), ElementsAre("a.txt"));
}

TEST_F(CompressorPackingTest, AnEmptyCompressDirMeansTheRootOfTheCurrentDrive) {
  settings.CompressDir = "";
  machine.Advance(200ms);
  window.Compress();
  EXPECT_TRUE(files.Exists("C:\\Auto Compressed.tvz"));
}

TEST_F(CompressorPackingTest, ACompressDirWithABackslashAtItsEndIsTheSameFolder) {
  settings.CompressDir = "C:\\Store\\";
  machine.Advance(200ms);
  window.Compress();
  EXPECT_TRUE(files.Exists("C:\\Store\\Auto Compressed.tvz"));
}

TEST_F(CompressorPackingTest, CompressPassesErrorsOfTheArchiverToItsCaller) {
  machine.Advance(200ms);
  machine.open_files.FailOn("OpenBinary", "C:\\Data\\sub\\b.txt", kPermissionDenied);
  EXPECT_EQ(RaisedBy([&] { window.Compress(); }), kPermissionDenied);
  EXPECT_EQ(window.CheckBox3.Caption.Get(), "Building Compressed File (50%)");
  EXPECT_FALSE(window.CheckBox3.Checked);
  EXPECT_EQ(window.XP_ProgressBar1.Value, 50);
  EXPECT_FALSE(files.Exists("C:\\Store\\Auto Compressed.tvz"));
}

TEST_F(CompressorPackingTest, CompressBeforeTheFirstTickFails) {
  EXPECT_NE(RaisedBy([&] { window.Compress(); }), 0);
}

// Packing by hand.

TEST_F(CompressorPackingTest, PacksAChosenFolderIntoAChosenFile) {
  machine.desktop.ActiveWindow = &window;
  PackByHand("C:\\Data", kArchive);
  EXPECT_EQ(window.Text5.Text.Get(), "C:\\Data");
  ASSERT_THAT(DialogsSeen(), ElementsAre(Kind::kFolder, Kind::kSave));
  const auto& dialogs = machine.dialogs.Seen();
  EXPECT_EQ(dialogs[0].folder.prompt, "Select A Folder:");
  EXPECT_EQ(dialogs[0].folder.owner, &window);
  EXPECT_EQ(dialogs[1].file.filter, kFilter);
  EXPECT_EQ(dialogs[1].file.default_ext, ".tvz");
  EXPECT_THAT(files.Names("C:\\Store"), ElementsAre("a.tvz"));
  EXPECT_EQ(VisibleSteps(), packing_steps);
}

TEST_F(CompressorPackingTest, TheStepsAreVisibleBeforeAnythingIsChosen) {
  machine.dialogs.Cancel(Kind::kFolder);
  machine.dialogs.Cancel(Kind::kSave);
  machine.dialogs.WhileOpen([&] { EXPECT_EQ(VisibleSteps(), packing_steps); });
  Click(window.Command1);
}

TEST_F(CompressorPackingTest, ShowsEveryStepOfAPackingInItsOrder) {
  FollowAll();
  PackByHand("C:\\Data", kArchive);
  // clang-format off
  EXPECT_THAT(shown, ElementsAre(
      "1: Starting To Build",
      "1 ticked", "1: Starting To Build... Done", "2: Enumeration Files",
      "2 ticked", "2: Enumeration Files... Done",
      "3: Building (0%)",
      "Text4: Please Wait While Compressing Your Backup File...",
      "3: Building Compressed File (50%)", "bar 1: 50",
      "3: Building Compressed File (100%)", "bar 1: 100",
      "3 ticked", "3: Building Compressed File... Done",
      "4: Compressing (0%)",
      "4: Compressing Files (7%)", "bar 1: 7",
      "4: Compressing Files (12%)", "bar 1: 12",
      "4: Compressing Files (100%)", "bar 1: 100",
      // 72 bytes from 37.
      "Text4: Compression Power Achieved: -94%",
      "4 ticked", "4: Compressing Files... Done",
      "5 ticked", "5: Successfully Done"));
  // clang-format on
}

TEST_F(CompressorPackingTest, TheBarRunsTwiceDuringAPacking) {
  // Large enough for several percents of compression.
  files.Write("C:\\Data\\a.txt", std::string(60000, 'a') + std::string(20000, 'b'));
  std::vector<int> values;
  window.XP_ProgressBar1.Value.Changed().Listen(
      [&] { values.push_back(window.XP_ProgressBar1.Value); });
  machine.Advance(200ms);
  window.Compress();
  ASSERT_GE(values.size(), 4U);
  EXPECT_EQ(values[0], 50);
  EXPECT_EQ(values[1], 100);
  EXPECT_LT(values[2], 100) << "down again for the compression";
  EXPECT_EQ(values.back(), 100);
}

TEST_F(CompressorPackingTest, CancellingTheFolderPacksTheFolderChosenLast) {
  PackByHand("C:\\Data", kArchive);
  machine.dialogs.Cancel(Kind::kFolder);
  machine.dialogs.Choose(Kind::kSave, "C:\\Store\\again.tvz");
  Click(window.Command1);
  EXPECT_EQ(window.Text5.Text.Get(), "C:\\Data");
  EXPECT_EQ(files.Content("C:\\Store\\again.tvz"), files.Content(kArchive));
}

TEST_F(CompressorPackingTest, CancellingTheFirstFolderPacksTheRootOfTheCurrentDrive) {
  files.Remove("C:\\Data");
  files.Write("C:\\top.txt", "at the top");
  machine.dialogs.Cancel(Kind::kFolder);
  machine.dialogs.Choose(Kind::kSave, kArchive);
  Click(window.Command1);
  EXPECT_EQ(window.Text5.Text.Get(), "");
  List(kArchive);
  EXPECT_THAT(window.List1.Rows.Rows(), ElementsAre("top.txt"));
}

TEST_F(CompressorPackingTest, CancellingTheSaveDialogDoesNothingAndLeavesTheStepsVisible) {
  machine.dialogs.Choose(Kind::kFolder, "C:\\Data");
  machine.dialogs.Cancel(Kind::kSave);
  Click(window.Command1);
  EXPECT_EQ(VisibleSteps(), packing_steps);
  EXPECT_EQ(window.CheckBox1.Caption.Get(), "");
  EXPECT_EQ(window.Text5.Text.Get(), "C:\\Data");
  EXPECT_THAT(files.Names("C:\\Store"), IsEmpty());
}

TEST_F(CompressorPackingTest, AFailureOfPackingByHandVanishesAndTheStepsStandStill) {
  machine.open_files.FailOn("OpenBinary", "C:\\Data\\sub\\b.txt", kPermissionDenied);
  PackByHand("C:\\Data", kArchive);
  EXPECT_EQ(window.CheckBox3.Caption.Get(), "Building Compressed File (50%)");
  EXPECT_FALSE(window.CheckBox3.Checked);
  EXPECT_FALSE(window.CheckBox5.Checked);
  EXPECT_EQ(window.Text4.Text.Get(), "Please Wait While Compressing Your Backup File...");
}

TEST_F(CompressorPackingTest, ASecondPackingShowsTheTicksOfTheFirstFromItsStart) {
  PackByHand("C:\\Data", kArchive);
  std::vector<bool> ticks;
  window.CheckBox1.Caption.Changed.Listen([&] {
    if (!ticks.empty()) return;
    for (const CheckBox* step : steps) ticks.push_back(step->Checked);
  });
  PackByHand("C:\\Data", "C:\\Store\\b.tvz");
  EXPECT_EQ(ticks, packing_steps) << "when the first caption changes";
  EXPECT_EQ(window.CheckBox5.Caption.Get(), "Successfully Done");
}

TEST_F(CompressorPackingTest, ASecondPackingReplacesTheCaptionsOnly) {
  PackByHand("C:\\Data", kArchive);
  FollowAll();
  PackByHand("C:\\Data", "C:\\Store\\b.tvz");
  EXPECT_THAT(shown, Contains("2: Enumeration Files... Done"));
  EXPECT_THAT(shown, Not(Contains("2: Enumeration Files... Done... Done")));
  EXPECT_THAT(shown, Not(Contains("1 ticked")));
  EXPECT_THAT(shown, Not(Contains("1 cleared")));
}

TEST_F(CompressorPackingTest, AnArchiveLargerThanItsContainerHasANegativePower) {
  files.Write("C:\\Small\\a.txt", "hi");
  PackByHand("C:\\Small", kArchive);
  // 17 bytes became 43: 252.9%.
  ASSERT_EQ(files.Content(kArchive).size(), 43U);
  EXPECT_EQ(window.Text4.Text.Get(), "Compression Power Achieved: -152%");
}

TEST_F(CompressorPackingTest, ThePowerIsWhatTheArchiveSaves) {
  files.Write("C:\\Large\\a.txt", std::string(40000, 'a') + std::string(40000, 'b'));
  PackByHand("C:\\Large", kArchive);
  const auto archive = static_cast<int>(files.Content(kArchive).size());
  const int container = 4 + 2 + 5 + 4 + 80000;
  ASSERT_LT(archive, container / 4);
  EXPECT_EQ(window.Text4.Text.Get(),
            "Compression Power Achieved: " + std::to_string(100 - archive * 100 / container) + "%");
}

TEST(CompressionPowerTest, CutsTheShareDownBeforeItIsTakenFrom100) {
  EXPECT_EQ(CompressionPower(1000, 642), 36);
  EXPECT_EQ(CompressionPower(1000, 640), 36);
  EXPECT_EQ(CompressionPower(1000, 639), 37);
  EXPECT_EQ(CompressionPower(4, 4), 0);
  EXPECT_EQ(CompressionPower(1000, 1), 100);
}

TEST(CompressionPowerTest, DividesFirstSoThat29Of100LeaveOneMore) {
  EXPECT_EQ(CompressionPower(100, 29), 72);
}

TEST(CompressionPowerTest, IsNegativeForALargerArchive) {
  EXPECT_EQ(CompressionPower(17, 21), -23);
  EXPECT_EQ(CompressionPower(4, 2147483647), 100 - 53687091175);
}

TEST(CompressionPowerTest, AnEmptyContainerHasNone) {
  EXPECT_EQ(RaisedBy([] { CompressionPower(0, 4); }), kDivisionByZero);
}

}  // namespace
}  // namespace tarnvale::testing
