// The compressor: its commands, and what it shows of what the archiver tells.
#include "compression/compressor_window.h"

#include <gmock/gmock.h>

#include <array>
#include <string>
#include <vector>

#include "dialogs/file_dialog.h"
#include "platform/window_slot.h"
#include "tests/support/fake_machine.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using Kind = FakeDialogs::Kind;

constexpr const char* kArchive = "C:\\Store\\a.tvz";
// Description and pattern, each ended by a NUL, and one more.
const std::string kFilter =
    std::string("Tarnvale Compressed File (*.tvz)") + '\0' + "*.tvz" + std::string(2, '\0');

class CompressorWindowTest : public ::testing::Test {
 protected:
  CompressorWindowTest() {
    files.Write("C:\\Data\\a.txt", "hi");
    files.Write("C:\\Data\\sub\\b.txt", "hello");
    files.MakeFolder("C:\\Store");
    settings.DestinationDir = "C:\\Data";
    settings.CompressDir = "C:\\Store";
  }

  /// A click, as the host tells it.
  void Click(chameleonButton& button) {
    machine.loop.Deliver([&] { button.Click.Emit(); });
  }
  void Click(Label& link) {
    machine.loop.Deliver([&] { link.Clicked.Emit(); });
  }

  void PackByHand(const Path& folder, const Path& archive) {
    machine.dialogs.Choose(Kind::kFolder, folder);
    machine.dialogs.Choose(Kind::kSave, archive);
    Click(window.Command1);
  }
  void Unpack(const Path& archive, const Path& folder) {
    machine.dialogs.Choose(Kind::kOpen, archive);
    machine.dialogs.Choose(Kind::kFolder, folder);
    Click(window.Command2);
  }
  void List(const Path& archive) {
    machine.dialogs.Choose(Kind::kOpen, archive);
    Click(window.Command3);
  }
  void ExtractEntry(const Path& archive, const Path& folder) {
    machine.dialogs.Choose(Kind::kOpen, archive);
    machine.dialogs.Choose(Kind::kFolder, folder);
    Click(window.Command4);
  }

  /// Writes down every change of the steps, messages and bars in `shown`.
  void FollowAll() {
    for (std::size_t i = 0; i < steps.size(); ++i) Follow(*steps[i], std::to_string(i + 1));
    Follow(window.Text4, "Text4: ");
    Follow(window.Text6, "Text6: ");
    Follow(window.Text2, "Text2: ");
    Follow(window.Text3, "Text3: ");
    Follow(window.XP_ProgressBar1, "bar 1: ");
    Follow(window.XP_ProgressBar2, "bar 2: ");
  }

  void Follow(CheckBox& row, const std::string& number) {
    row.Caption.Changed.Listen(
        [this, &row, number] { shown.push_back(number + ": " + row.Caption.Get()); });
    row.Checked.Changed().Listen(
        [this, &row, number] { shown.push_back(number + (row.Checked ? " ticked" : " cleared")); });
  }
  void Follow(TextBox& box, const std::string& name) {
    box.Text.Changed().Listen([this, &box, name] { shown.push_back(name + box.Text.Get()); });
  }
  void Follow(XP_ProgressBar& bar, const std::string& name) {
    bar.Value.Changed().Listen(
        [this, &bar, name] { shown.push_back(name + std::to_string(bar.Value.Get())); });
  }

  std::vector<bool> VisibleSteps() const {
    std::vector<bool> visible;
    for (const CheckBox* step : steps) visible.push_back(step->Visible);
    return visible;
  }

  std::vector<Kind> DialogsSeen() const {
    std::vector<Kind> kinds;
    for (const auto& dialog : machine.dialogs.Seen()) kinds.push_back(dialog.kind);
    return kinds;
  }

  FakeMachine machine;
  FakeFiles& files = machine.files;
  BackupSettings settings;
  compression window{machine.Interfaces(), settings};
  /// CheckBox1 to CheckBox10.
  std::array<CheckBox*, 10> steps{&window.CheckBox1, &window.CheckBox2, &window.CheckBox3,
                                  &window.CheckBox4, &window.CheckBox5, &window.CheckBox6,
                                  &window.CheckBox7, &window.CheckBox8, &window.CheckBox9,
                                  &window.CheckBox10};
  std::vector<std::string> shown;
  const std::vector<bool> packing_steps{true,  true,  true,  true,  true,
                                        false, false, false, false, false};
  const std::vector<bool> unpacking_steps{false, false, false, false, false,
                                          true,  true,  true,  true,  true};
};

// How it comes up.

TEST_F(CompressorWindowTest, ComesUpHiddenWithThePackingPanelAndNoSteps) {
  EXPECT_FALSE(window.Visible);
  EXPECT_EQ(window.Caption.Get(), "Tarnvale Compressor");
  EXPECT_TRUE(window.GroupBox1.Visible);
  EXPECT_FALSE(window.GroupBox2.Visible);
  EXPECT_THAT(VisibleSteps(), Each(false));
  EXPECT_EQ(window.XP_ProgressBar1.Value, 0);
}

TEST_F(CompressorWindowTest, SaysWhatItsTasksAndPanelsAre) {
  const std::vector<std::string> tasks{window.Label43.Caption, window.Label41.Caption,
                                       window.Label42.Caption, window.Label47.Caption,
                                       window.Label49.Caption, window.Label1.Caption,
                                       window.Label2.Caption};
  EXPECT_THAT(tasks,
              ElementsAre("Compression Tasks", "Compress Backup Directory",
                          "Decompress A Selected  File", "Other Tasks", "Upload Compressed File",
                          "Split A Compressed File", "Quit This Compression"));
  const std::vector<std::string> panels{window.GroupBox1.Caption, window.Command1.Caption,
                                        window.GroupBox2.Caption, window.Command2.Caption,
                                        window.Frame3.Caption,    window.Command3.Caption,
                                        window.Command4.Caption};
  EXPECT_THAT(panels,
              ElementsAre("Create A Compressed Backup", "Compress Backed Up Files",
                          "Decompress A Compressed Backup",
                          "Decompress A Compressed Backed Up File", "Read File List From Archive",
                          "Read File List From Archive", "Extract Selected File From Archive"));
}

TEST_F(CompressorWindowTest, StateFieldsHoldTheirDesignTextsAndTheStatusIsReady) {
  EXPECT_EQ(window.Text1.Text.Get(), "Select Folder To Compress");
  EXPECT_EQ(window.Text5.Text.Get(), "");
  EXPECT_EQ(window.Text3.Text.Get(), "%");
  // In place of "<Status>", by the archiver's first status.
  EXPECT_EQ(window.Text2.Text.Get(), "Ready");
}

TEST_F(CompressorWindowTest, ThePanelForSingleEntriesIsNeverSeen) {
  window.Show();
  EXPECT_FALSE(window.Frame3.Visible);
  for (const Placement& placement : window.Placements()) {
    EXPECT_NE(placement.control, &window.Frame3);
    EXPECT_NE(placement.container, &window.Frame3);
  }
}

TEST_F(CompressorWindowTest, APersonCannotTickAStep) {
  window.Show();
  PackByHand("C:\\Data", kArchive);
  window.CheckBox1.Press();
  EXPECT_TRUE(window.CheckBox1.Checked);
}

// Timers.

TEST_F(CompressorWindowTest, CopiesTheStorageLocationFiveTimesASecond) {
  EXPECT_EQ(window.Timer1.IntervalMs(), 200);
  EXPECT_TRUE(window.Timer1.Enabled);
  machine.Advance(199ms);
  EXPECT_EQ(window.Text1.Text.Get(), "Select Folder To Compress");
  machine.Advance(1ms);
  EXPECT_EQ(window.Text1.Text.Get(), "C:\\Data");
  settings.DestinationDir = "C:\\Other";
  EXPECT_EQ(window.Text1.Text.Get(), "C:\\Data");
  machine.Advance(200ms);
  EXPECT_EQ(window.Text1.Text.Get(), "C:\\Other");
}

TEST_F(CompressorWindowTest, TheSecondTimerIsDisabledAndHasNoHandler) {
  EXPECT_EQ(window.Timer2.IntervalMs(), 100);
  EXPECT_FALSE(window.Timer2.Enabled);
  EXPECT_FALSE(window.Timer2.Tick.HasListeners());
}

// The task panel.

TEST_F(CompressorWindowTest, TheLinksSwitchBetweenThePanels) {
  Click(window.Label42);
  EXPECT_FALSE(window.GroupBox1.Visible);
  EXPECT_TRUE(window.GroupBox2.Visible);
  Click(window.Label41);
  EXPECT_TRUE(window.GroupBox1.Visible);
  EXPECT_FALSE(window.GroupBox2.Visible);
}

TEST_F(CompressorWindowTest, OthersCanShowThePackingPanel) {
  Click(window.Label42);
  window.ShowCreatePanel();
  EXPECT_TRUE(window.GroupBox1.Visible);
  EXPECT_FALSE(window.GroupBox2.Visible);
}

TEST_F(CompressorWindowTest, TheOtherTasksOpenTheirWindows) {
  std::vector<std::string> opened;
  window.ShowTransfer = [&] { opened.push_back("transfer"); };
  window.ShowSplitter = [&] { opened.push_back("splitter"); };
  Click(window.Label49);
  Click(window.Label1);
  EXPECT_THAT(opened, ElementsAre("transfer", "splitter"));
}

TEST_F(CompressorWindowTest, ATaskWhoseWindowIsNotThereDoesNothing) {
  Click(window.Label49);
  Click(window.Label1);
  EXPECT_FALSE(window.Visible);
}

TEST_F(CompressorWindowTest, QuittingClosesItAndStopsItsTimer) {
  window.Show();
  Click(window.Label2);
  EXPECT_FALSE(window.Visible);
  EXPECT_FALSE(window.Timer1.Enabled);
  machine.Advance(1s);
  EXPECT_EQ(window.Text1.Text.Get(), "Select Folder To Compress");
}

TEST_F(CompressorWindowTest, TheNextUseAfterQuittingIsANewInstanceWithItsDesignText) {
  WindowSlot<compression> slot(machine.windows, [this] {
    return std::make_unique<compression>(machine.Interfaces(), settings);
  });
  machine.Advance(200ms);
  slot.Show();
  machine.Advance(200ms);
  compression& first = slot.Get();
  EXPECT_EQ(first.Text1.Text.Get(), "C:\\Data");
  first.Compress();
  Click(first.Label2);
  compression& second = slot.Get();
  EXPECT_NE(&second, &first);
  EXPECT_FALSE(second.Visible);
  EXPECT_EQ(second.Text1.Text.Get(), "Select Folder To Compress");
  EXPECT_FALSE(second.CheckBox1.Checked);
  EXPECT_EQ(second.XP_ProgressBar1.Value, 0);
  machine.Advance(200ms);
  EXPECT_EQ(second.Text1.Text.Get(), "C:\\Data");
}

// Compress, as a backup run calls it.

TEST_F(CompressorWindowTest, PacksTheStorageLocationIntoTheFixedNameWithoutShowingUp) {
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

TEST_F(CompressorWindowTest, PacksWhatTheStorageLocationWasAtTheLastTick) {
  files.Write("C:\\Other\\c.txt", "new");
  machine.Advance(200ms);
  settings.DestinationDir = "C:\\Other";
  window.Compress();
  List("C:\\Store\\Auto Compressed.tvz");
  EXPECT_THAT(window.List1.Rows.Rows(), ElementsAre("a.txt", "sub\\b.txt"));
}

TEST_F(CompressorWindowTest, EachRunReplacesTheLastArchive) {
  machine.Advance(200ms);
  window.Compress();
  files.Remove("C:\\Data\\sub");
  window.Compress();
  List("C:\\Store\\Auto Compressed.tvz");
  EXPECT_THAT(window.List1.Rows.Rows(), ElementsAre("a.txt"));
}

TEST_F(CompressorWindowTest, AnEmptyCompressDirMeansTheRootOfTheCurrentDrive) {
  settings.CompressDir = "";
  machine.Advance(200ms);
  window.Compress();
  EXPECT_TRUE(files.Exists("C:\\Auto Compressed.tvz"));
}

TEST_F(CompressorWindowTest, ACompressDirWithABackslashAtItsEndIsTheSameFolder) {
  settings.CompressDir = "C:\\Store\\";
  machine.Advance(200ms);
  window.Compress();
  EXPECT_TRUE(files.Exists("C:\\Store\\Auto Compressed.tvz"));
}

TEST_F(CompressorWindowTest, CompressPassesErrorsOfTheArchiverToItsCaller) {
  machine.Advance(200ms);
  machine.open_files.FailOn("OpenBinary", "C:\\Data\\sub\\b.txt", kPermissionDenied);
  EXPECT_EQ(RaisedBy([&] { window.Compress(); }), kPermissionDenied);
  EXPECT_EQ(window.CheckBox3.Caption.Get(), "Building Compressed File (50%)");
  EXPECT_FALSE(window.CheckBox3.Checked);
  EXPECT_EQ(window.XP_ProgressBar1.Value, 50);
  EXPECT_FALSE(files.Exists("C:\\Store\\Auto Compressed.tvz"));
}

TEST_F(CompressorWindowTest, CompressBeforeTheFirstTickFails) {
  EXPECT_NE(RaisedBy([&] { window.Compress(); }), 0);
}

// Packing by hand.

TEST_F(CompressorWindowTest, PacksAChosenFolderIntoAChosenFile) {
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

TEST_F(CompressorWindowTest, TheStepsAreVisibleBeforeAnythingIsChosen) {
  machine.dialogs.Cancel(Kind::kFolder);
  machine.dialogs.Cancel(Kind::kSave);
  machine.dialogs.WhileOpen([&] { EXPECT_EQ(VisibleSteps(), packing_steps); });
  Click(window.Command1);
}

TEST_F(CompressorWindowTest, ShowsEveryStepOfAPackingInItsOrder) {
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

TEST_F(CompressorWindowTest, TheBarRunsTwiceDuringAPacking) {
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

TEST_F(CompressorWindowTest, CancellingTheFolderPacksTheFolderChosenLast) {
  PackByHand("C:\\Data", kArchive);
  machine.dialogs.Cancel(Kind::kFolder);
  machine.dialogs.Choose(Kind::kSave, "C:\\Store\\again.tvz");
  Click(window.Command1);
  EXPECT_EQ(window.Text5.Text.Get(), "C:\\Data");
  EXPECT_EQ(files.Content("C:\\Store\\again.tvz"), files.Content(kArchive));
}

TEST_F(CompressorWindowTest, CancellingTheFirstFolderPacksTheRootOfTheCurrentDrive) {
  files.Remove("C:\\Data");
  files.Write("C:\\top.txt", "at the top");
  machine.dialogs.Cancel(Kind::kFolder);
  machine.dialogs.Choose(Kind::kSave, kArchive);
  Click(window.Command1);
  EXPECT_EQ(window.Text5.Text.Get(), "");
  List(kArchive);
  EXPECT_THAT(window.List1.Rows.Rows(), ElementsAre("top.txt"));
}

TEST_F(CompressorWindowTest, CancellingTheSaveDialogDoesNothingAndLeavesTheStepsVisible) {
  machine.dialogs.Choose(Kind::kFolder, "C:\\Data");
  machine.dialogs.Cancel(Kind::kSave);
  Click(window.Command1);
  EXPECT_EQ(VisibleSteps(), packing_steps);
  EXPECT_EQ(window.CheckBox1.Caption.Get(), "");
  EXPECT_EQ(window.Text5.Text.Get(), "C:\\Data");
  EXPECT_THAT(files.Names("C:\\Store"), IsEmpty());
}

TEST_F(CompressorWindowTest, AFailureOfPackingByHandVanishesAndTheStepsStandStill) {
  machine.open_files.FailOn("OpenBinary", "C:\\Data\\sub\\b.txt", kPermissionDenied);
  PackByHand("C:\\Data", kArchive);
  EXPECT_EQ(window.CheckBox3.Caption.Get(), "Building Compressed File (50%)");
  EXPECT_FALSE(window.CheckBox3.Checked);
  EXPECT_FALSE(window.CheckBox5.Checked);
  EXPECT_EQ(window.Text4.Text.Get(), "Please Wait While Compressing Your Backup File...");
}

TEST_F(CompressorWindowTest, ASecondPackingShowsTheTicksOfTheFirstFromItsStart) {
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

TEST_F(CompressorWindowTest, ASecondPackingReplacesTheCaptionsOnly) {
  PackByHand("C:\\Data", kArchive);
  FollowAll();
  PackByHand("C:\\Data", "C:\\Store\\b.tvz");
  EXPECT_THAT(shown, Contains("2: Enumeration Files... Done"));
  EXPECT_THAT(shown, Not(Contains("2: Enumeration Files... Done... Done")));
  EXPECT_THAT(shown, Not(Contains("1 ticked")));
  EXPECT_THAT(shown, Not(Contains("1 cleared")));
}

TEST_F(CompressorWindowTest, AnArchiveLargerThanItsContainerHasANegativePower) {
  files.Write("C:\\Small\\a.txt", "hi");
  PackByHand("C:\\Small", kArchive);
  // 17 bytes became 43: 252.9%.
  ASSERT_EQ(files.Content(kArchive).size(), 43U);
  EXPECT_EQ(window.Text4.Text.Get(), "Compression Power Achieved: -152%");
}

TEST_F(CompressorWindowTest, ThePowerIsWhatTheArchiveSaves) {
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

// Unpacking.

TEST_F(CompressorWindowTest, UnpacksAChosenArchiveIntoAChosenFolder) {
  PackByHand("C:\\Data", kArchive);
  Unpack(kArchive, "C:\\Out");
  ASSERT_THAT(DialogsSeen(), ElementsAre(Kind::kFolder, Kind::kSave, Kind::kOpen, Kind::kFolder));
  const auto& dialogs = machine.dialogs.Seen();
  EXPECT_EQ(dialogs[2].file.filter, kFilter);
  EXPECT_EQ(dialogs[3].folder.prompt, "Please Select Directory To Extract To:");
  EXPECT_EQ(files.Content("C:\\Out\\a.txt"), "hi");
  EXPECT_EQ(files.Content("C:\\Out\\sub\\b.txt"), "hello");
}

TEST_F(CompressorWindowTest, ShowsEveryStepOfAnUnpackingInItsOrder) {
  PackByHand("C:\\Data", kArchive);
  FollowAll();
  Unpack(kArchive, "C:\\Out");
  // clang-format off
  EXPECT_THAT(shown, ElementsAre(
      "10: Starting To Extract",
      "10 ticked", "10: Starting To Extract... Done", "9: Decompressing Archive (0%)",
      "9: Decompressing Compressed Files (89%)", "bar 2: 89",
      "9: Decompressing Compressed Files (100%)", "bar 2: 100",
      "9 ticked", "9: Decompressing Compressed File... Done",
      "8: Reading Compressed Backup File",
      "8 ticked", "7: Extracting (0%)",
      "Text6: All Files Have Been Sucessfully Decompressed",
      "7: Extracting Files (50%)", "bar 2: 50",
      "7: Extracting Files (100%)", "bar 2: 100",
      "7 ticked", "7: Extracting Files... Done",
      "6 ticked", "6: Done"));
  // clang-format on
}

TEST_F(CompressorWindowTest, TheMessageOfSuccessComesBeforeTheFirstFileIsWritten) {
  PackByHand("C:\\Data", kArchive);
  bool written = true;
  window.Text6.Text.Changed().Listen([&] { written = files.Exists("C:\\Out\\a.txt"); });
  Unpack(kArchive, "C:\\Out");
  EXPECT_FALSE(written);
}

TEST_F(CompressorWindowTest, CancellingTheOpenDialogShowsTheUnpackingStepsOnly) {
  machine.dialogs.Cancel(Kind::kOpen);
  Click(window.Command2);
  EXPECT_EQ(VisibleSteps(), unpacking_steps);
  EXPECT_EQ(window.CheckBox10.Caption.Get(), "");
}

TEST_F(CompressorWindowTest, CancellingTheFolderUnpacksNothing) {
  PackByHand("C:\\Data", kArchive);
  machine.dialogs.Choose(Kind::kOpen, kArchive);
  machine.dialogs.Cancel(Kind::kFolder);
  Click(window.Command2);
  EXPECT_EQ(window.CheckBox10.Caption.Get(), "");
}

TEST_F(CompressorWindowTest, OfAMissingArchiveTheArchiverTellsInItsBox) {
  machine.boxes.Expect("The archive does not exist!", BoxIcon::kStop, BoxAnswer::kOk);
  Unpack("C:\\Store\\missing.tvz", "C:\\Out");
  EXPECT_EQ(window.CheckBox10.Caption.Get(), "Starting To Extract");
  EXPECT_FALSE(window.CheckBox10.Checked);
}

TEST_F(CompressorWindowTest, AFailureOfUnpackingVanishesAndTheStepsStandStill) {
  files.Write(kArchive, "no archive at all");
  Unpack(kArchive, "C:\\Out");
  EXPECT_TRUE(window.CheckBox10.Checked);
  EXPECT_FALSE(window.CheckBox9.Checked);
  EXPECT_EQ(window.CheckBox9.Caption.Get(), "Decompressing Archive (0%)");
  EXPECT_FALSE(files.Exists("C:\\Out"));
}

TEST_F(CompressorWindowTest, ASecondUnpackingKeepsTheTicks) {
  PackByHand("C:\\Data", kArchive);
  Unpack(kArchive, "C:\\Out");
  FollowAll();
  Unpack(kArchive, "C:\\Again");
  EXPECT_EQ(shown.front(), "10: Starting To Extract");
  EXPECT_THAT(shown, Not(Contains("10 cleared")));
  EXPECT_EQ(window.CheckBox6.Caption.Get(), "Done");
  EXPECT_TRUE(window.CheckBox6.Checked);
}

// Listing.

TEST_F(CompressorWindowTest, ListsAnArchive) {
  PackByHand("C:\\Data", kArchive);
  FollowAll();
  List(kArchive);
  EXPECT_EQ(machine.dialogs.Seen().back().file.filter, kFilter);
  EXPECT_THAT(window.List1.Rows.Rows(), ElementsAre("a.txt", "sub\\b.txt"));
  EXPECT_THAT(shown, ElementsAre("Text2: Starting", "Text2: Decompressing", "Text3: 89%",
                                 "Text3: 100%", "Text2: Reading", "Text2: Done"));
}

TEST_F(CompressorWindowTest, ASecondListingComesBehindTheFirst) {
  PackByHand("C:\\Data", kArchive);
  List(kArchive);
  List(kArchive);
  EXPECT_THAT(window.List1.Rows.Rows(), ElementsAre("a.txt", "sub\\b.txt", "a.txt", "sub\\b.txt"));
}

TEST_F(CompressorWindowTest, NothingGuardsACancelledListing) {
  machine.dialogs.Cancel(Kind::kOpen);
  machine.ExpectFault(CommonDialog::kCancelled);
  Click(window.Command3);
  EXPECT_EQ(window.Text2.Text.Get(), "Ready");
}

TEST_F(CompressorWindowTest, NothingGuardsAListingThatFails) {
  PackByHand("C:\\Data", kArchive);
  machine.files.FailNext("List", kDeviceUnavailable);
  machine.ExpectFault(kDeviceUnavailable);
  List(kArchive);
  EXPECT_EQ(window.Text2.Text.Get(), "Starting");
}

TEST_F(CompressorWindowTest, ListingAMissingArchiveShowsTheArchiversBox) {
  machine.boxes.Expect("The Archive Does Not Exist!", BoxIcon::kStop, BoxAnswer::kOk);
  List("C:\\Store\\missing.tvz");
  EXPECT_THAT(window.List1.Rows.Rows(), IsEmpty());
}

// One entry.

TEST_F(CompressorWindowTest, ExtractsTheSelectedEntryAlone) {
  PackByHand("C:\\Data", kArchive);
  List(kArchive);
  window.List1.Select(1, true);
  window.Text3.Text = "%";
  FollowAll();
  ExtractEntry(kArchive, "C:\\Out");
  const auto& dialogs = machine.dialogs.Seen();
  EXPECT_EQ(dialogs[dialogs.size() - 2].file.filter, kFilter);
  EXPECT_EQ(dialogs.back().folder.prompt, "Please Select Directory To Rxtract To:");
  EXPECT_THAT(files.Names("C:\\Out"), ElementsAre("sub"));
  EXPECT_EQ(files.Content("C:\\Out\\sub\\b.txt"), "hello");
  EXPECT_THAT(shown, ElementsAre("Text2: Starting", "Text2: Decompressing", "Text3: 89%",
                                 "Text3: 100%", "Text2: Reading", "Text2: Done"));
}

TEST_F(CompressorWindowTest, WithNoEntrySelectedNothingIsExtracted) {
  PackByHand("C:\\Data", kArchive);
  List(kArchive);
  ExtractEntry(kArchive, "C:\\Out");
  EXPECT_FALSE(files.Exists("C:\\Out"));
  EXPECT_EQ(window.Text2.Text.Get(), "Done");
}

TEST_F(CompressorWindowTest, CancellingADialogOfAnEntryEndsTheCommand) {
  machine.dialogs.Cancel(Kind::kOpen);
  Click(window.Command4);
  machine.dialogs.Choose(Kind::kOpen, kArchive);
  machine.dialogs.Cancel(Kind::kFolder);
  Click(window.Command4);
  EXPECT_EQ(window.Text2.Text.Get(), "Ready");
}

TEST_F(CompressorWindowTest, AFailureOfExtractingAnEntryVanishes) {
  files.Write(kArchive, "no archive at all");
  ExtractEntry(kArchive, "C:\\Out");
  EXPECT_EQ(window.Text2.Text.Get(), "Decompressing");
}

TEST_F(CompressorWindowTest, AfterAnEntryCameOutTheNextUnpackingFailsSilently) {
  PackByHand("C:\\Data", kArchive);
  List(kArchive);
  window.List1.Select(0, true);
  ExtractEntry(kArchive, "C:\\Out");
  Unpack(kArchive, "C:\\Again");
  EXPECT_FALSE(files.Exists("C:\\Again"));
  EXPECT_FALSE(window.CheckBox9.Checked);
}

// During an operation.

TEST_F(CompressorWindowTest, TheTimerTicksDuringAnOperation) {
  machine.Advance(200ms);
  machine.loop.OnYield(1, [&] {
    settings.DestinationDir = "C:\\Other";
    machine.Advance(200ms);
  });
  window.Compress();
  EXPECT_EQ(window.Text1.Text.Get(), "C:\\Other");
}

TEST_F(CompressorWindowTest, AClickDuringAnOperationStartsASecondOneWithinIt) {
  PackByHand("C:\\Data", kArchive);
  machine.Advance(200ms);
  machine.loop.OnYield(1, [&] { Unpack(kArchive, "C:\\Out"); });
  window.Compress();
  EXPECT_EQ(files.Content("C:\\Out\\sub\\b.txt"), "hello");
  EXPECT_TRUE(files.Exists("C:\\Store\\Auto Compressed.tvz"));
  EXPECT_EQ(window.CheckBox6.Caption.Get(), "Done");
  EXPECT_EQ(window.CheckBox5.Caption.Get(), "Successfully Done");
}

TEST_F(CompressorWindowTest, ClosingItDuringAnOperationLetsTheOperationEnd) {
  machine.Advance(200ms);
  window.Show();
  machine.loop.OnYield(1, [&] { Click(window.Label2); });
  window.Compress();
  EXPECT_FALSE(window.Visible);
  EXPECT_TRUE(files.Exists("C:\\Store\\Auto Compressed.tvz"));
}

}  // namespace
}  // namespace tarnvale::testing
