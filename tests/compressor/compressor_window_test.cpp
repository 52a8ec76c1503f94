// The compressor as it comes up, and its task list.
#include "compressor/compressor_window.h"

#include <gmock/gmock.h>

#include <map>

#include "tests/compressor/compressor_window_fixture.h"
#include "ui/window_slot.h"

namespace tarnvale::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

// How it comes up.

TEST_F(CompressorWindowTest, ComesUpHiddenWithThePackingPanelAndNoSteps) {
  EXPECT_FALSE(window.Visible);
  EXPECT_EQ(window.Caption.Get(), "Tarnvale Compressor");
  EXPECT_TRUE(window.GroupBox1.Visible);
  EXPECT_FALSE(window.GroupBox2.Visible);
  EXPECT_THAT(VisibleSteps(), Each(false));
  EXPECT_EQ(window.XP_ProgressBar1.Value, 0);
}

TEST_F(CompressorWindowTest, EverythingLiesWithin9810By4170Twips) {
  EXPECT_EQ(window.ClientSize.width_px * kTwipsPerPixel, 9810);
  EXPECT_EQ(window.ClientSize.height_px * kTwipsPerPixel, 4170);
  std::map<const Control*, Rect> places{
      {nullptr, {0, 0, window.ClientSize.width_px, window.ClientSize.height_px}}};
  for (const auto& [control, container, place] : window.Placements()) {
    EXPECT_LE(place.RightPx(), places.at(container).width_px);
    EXPECT_LE(place.BottomPx(), places.at(container).height_px);
    places[control] = place;
  }
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
  WindowSlot<compression> slot(machine.loop, machine.windows, [this] {
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

}  // namespace
}  // namespace tarnvale::testing
