#include "splitter/frm_main.h"

#include <gmock/gmock.h>

#include "tests/kit/recording_painter.h"
#include "tests/splitter/frm_main_fixture.h"
#include "tests/support/raised.h"
#include "ui/window_slot.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

TEST_F(FrmMainTest, OpensInItsDesignState) {
  EXPECT_EQ(form.Caption.Get(), "Tarnvale Splitter");
  EXPECT_EQ(form.ClientSize, (Size{8175 / kTwipsPerPixel, 4080 / kTwipsPerPixel}));
  EXPECT_TRUE(form.GroupBox1.Visible);
  EXPECT_FALSE(form.GroupBox2.Visible);
  EXPECT_EQ(form.Combo1.Text.Get(), "Select A Disk Spanning");
  EXPECT_EQ(form.txtSegSize.Text.Get(), "1.38");
  EXPECT_EQ(form.txtSFName.ToolTip.Get(), "Text field for file name");
  EXPECT_EQ(form.txtSegfname.ToolTip.Get(), "Text field for segment file to be merged");
  EXPECT_EQ(form.Text1.Text.Get(), "Text1");
  EXPECT_EQ(form.Text2.Text.Get(), "Text2");
  EXPECT_EQ(form.Text3.Text.Get(), "");
  EXPECT_EQ(form.XP_ProgressBar1.Value, 0);
  EXPECT_EQ(form.XP_ProgressBar2.Value, 0);
}

TEST_F(FrmMainTest, TheTextsAreTheRequiredOnes) {
  EXPECT_EQ(form.Label43.Caption.Get(), "Commands");
  EXPECT_EQ(form.Label41.Caption.Get(), "Split A Compressed File");
  EXPECT_EQ(form.Label42.Caption.Get(), "Join Splitted Compressed Files");
  EXPECT_EQ(form.Label3.Caption.Get(), "Quit Tarnvale Splitter");
  EXPECT_EQ(form.Label1.Caption.Get(), "Progress");
  EXPECT_EQ(form.GroupBox1.Caption.Get(), "Split A Compressed Backup File");
  EXPECT_EQ(form.GroupBox2.Caption.Get(), "Join A Splitted Compressed Backup File");
  EXPECT_EQ(form.FileNameLabel.Caption.Get(), "File Name:");
  EXPECT_EQ(form.MediumLabel.Caption.Get(), "Split File To Fit On:");
  EXPECT_EQ(form.PartNameLabel.Caption.Get(), "Split File Name:");
  EXPECT_EQ(form.chameleonButton3.Caption.Get(), "Open Compressed File To Split");
  EXPECT_EQ(form.chameleonButton2.Caption.Get(), "Split Compressed File Now");
  EXPECT_EQ(form.chameleonButton5.Caption.Get(), "Open Splitted File To Join");
  EXPECT_EQ(form.chameleonButton1.Caption.Get(), "Join This Splitted File Now");
}

TEST_F(FrmMainTest, ListsTheMediaInTheirOrder) {
  EXPECT_THAT(
      form.Combo1.Rows.Rows(),
      ElementsAre("Floppy Disk 1.44 MBs", "CD-ROM 800 MBs", "CD-ROM 700 MBs", "CD-ROM 650 MBs",
                  "DVD-ROM 3.8 GBs", "DVD-ROM DL 8.4 GBs", "Zip Disk 100 MBs", "Zip Disk 250 MBs",
                  "Zip Disk 750 MBs", "Manual Size"));
  EXPECT_TRUE(form.Combo1.Editable);
}

TEST_F(FrmMainTest, TheStateFieldsAreNotLaidOut) {
  for (const Control* field : std::initializer_list<const Control*>{
           &form.Text1, &form.Text2, &form.Text3, &form.picProgress}) {
    EXPECT_EQ(field->Owner(), nullptr);
  }
}

TEST_F(FrmMainTest, NothingReachesOverTheEdgeOfWhatHoldsIt) {
  for (const Placement& inner : form.Placements()) {
    Size room = form.ClientSize;
    for (const Placement& outer : form.Placements()) {
      if (outer.control == inner.container) room = {outer.place.width_px, outer.place.height_px};
    }
    EXPECT_LE(inner.place.RightPx(), room.width_px);
    EXPECT_LE(inner.place.BottomPx(), room.height_px);
  }
}

TEST_F(FrmMainTest, TheTaskListShowsOneTaskAtATime) {
  form.Label42.Clicked.Emit();
  EXPECT_FALSE(form.GroupBox1.Visible);
  EXPECT_TRUE(form.GroupBox2.Visible);
  form.Label41.Clicked.Emit();
  EXPECT_TRUE(form.GroupBox1.Visible);
  EXPECT_FALSE(form.GroupBox2.Visible);
}

TEST_F(FrmMainTest, QuitClosesTheWindowAndStopsItsTimer) {
  form.Show();
  form.Label3.Clicked.Emit();
  EXPECT_FALSE(form.Visible);
  EXPECT_FALSE(machine.loop.Timers().NextDue());
}

TEST_F(FrmMainTest, TheNextUseMakesItAnew) {
  WindowSlot<frmMain> slot(machine.loop, machine.windows,
                           [&] { return std::make_unique<frmMain>(machine.Interfaces()); });
  slot.Get().txtSFName.Text = "C:\\in\\a.tvz";
  slot.Get().Text3.Text = "C:\\out";
  slot.Get().Label3.Clicked.Emit();
  EXPECT_FALSE(slot.IsLoaded());
  EXPECT_EQ(slot.Get().txtSFName.Text.Get(), "");
  EXPECT_EQ(slot.Get().Text3.Text.Get(), "");
}

TEST_F(FrmMainTest, TheFirstBarGoesRoundAndTheSecondShowsThePercent) {
  std::vector<int> lively;
  for (const int percent : {1, 20, 50, 75, 99}) {
    form.spProg(static_cast<std::int16_t>(percent));
    lively.push_back(form.XP_ProgressBar1.Value);
    EXPECT_EQ(form.XP_ProgressBar2.Value, percent);
  }
  EXPECT_THAT(lively, ElementsAre(25, 50, 75, 100, 25));
}

TEST_F(FrmMainTest, APercentOfZeroLeavesTheSecondBarFull) {
  form.spProg(40);
  form.spProg(0);
  EXPECT_EQ(form.XP_ProgressBar2.Value, 100);
}

TEST_F(FrmMainTest, ThePictureFillsABoxUpToThePercent) {
  form.spProg(50);
  Canvas canvas(ProgressPicture::kSize, 1);
  RecordingPainter text;
  form.picProgress.Paint(canvas, text);
  ASSERT_EQ(text.drawn.size(), 1U);
  EXPECT_EQ(text.drawn[0].text, "50%");
  EXPECT_EQ(text.drawn[0].area, (Rect{3, 1, 18, 13}));
  // 50 * 1.55 + 30 = 107.5, to the even 108; the outline lies on top.
  EXPECT_EQ(canvas.PixelAt(29, 7), std::nullopt);
  EXPECT_EQ(canvas.PixelAt(30, 7), kBlack);
  EXPECT_EQ(canvas.PixelAt(31, 7), 0x808080U);
  EXPECT_EQ(canvas.PixelAt(108, 11), 0x808080U);
  EXPECT_EQ(canvas.PixelAt(109, 7), std::nullopt);
  EXPECT_EQ(canvas.PixelAt(184, 7), kBlack);
  EXPECT_EQ(canvas.PixelAt(100, 1), std::nullopt);
  EXPECT_EQ(canvas.PixelAt(100, 2), kBlack);
  EXPECT_EQ(canvas.PixelAt(100, 12), kBlack);
  EXPECT_EQ(canvas.PixelAt(100, 13), std::nullopt);
}

TEST_F(FrmMainTest, TheFullBoxReachesOnePixelBeyondItsOutline) {
  form.spProg(100);
  Canvas canvas(ProgressPicture::kSize, 1);
  RecordingPainter text;
  form.picProgress.Paint(canvas, text);
  EXPECT_EQ(canvas.PixelAt(185, 7), 0x808080U);
}

TEST_F(FrmMainTest, FilesAreChosenInTheOpenDialog) {
  machine.dialogs.Choose(Dialog::kOpen, "C:\\in\\a.tvz");
  Click(form.chameleonButton3);
  EXPECT_EQ(form.txtSFName.Text.Get(), "C:\\in\\a.tvz");
  machine.dialogs.Choose(Dialog::kOpen, "C:\\in\\a.tvz.001");
  Click(form.chameleonButton5);
  EXPECT_EQ(form.txtSegfname.Text.Get(), "C:\\in\\a.tvz.001");

  const FileDialogRecord& record = machine.dialogs.Seen()[0].file;
  EXPECT_EQ(record.title, "Open To Split");
  EXPECT_EQ(machine.dialogs.Seen()[1].file.title, "Open");
  EXPECT_EQ(WithBars(record.filter),
            "Tarnvale Compressed File (*.tvz)|*.tvz|All Files (*.*)|*.*||");
  EXPECT_EQ(record.filter_index, 0);
  EXPECT_EQ(record.flags, 12292U);
  EXPECT_EQ(record.owner, &form);
}

TEST_F(FrmMainTest, ACancelledChoiceKeepsTheFile) {
  form.txtSFName.Text = "C:\\in\\old.tvz";
  machine.dialogs.Cancel(Dialog::kOpen);
  Click(form.chameleonButton3);
  EXPECT_EQ(form.txtSFName.Text.Get(), "C:\\in\\old.tvz");
}

TEST_F(FrmMainTest, TheFirstDroppedFileLandsInTheField) {
  EXPECT_TRUE(form.txtSFName.AcceptsFiles);
  EXPECT_TRUE(form.txtSegfname.AcceptsFiles);
  form.txtSFName.FilesDropped.Emit({"C:\\in\\a.tvz", "C:\\in\\b.tvz"});
  form.txtSegfname.FilesDropped.Emit({"C:\\in\\c.tvz.001"});
  EXPECT_EQ(form.txtSFName.Text.Get(), "C:\\in\\a.tvz");
  EXPECT_EQ(form.txtSegfname.Text.Get(), "C:\\in\\c.tvz.001");
  form.txtSFName.FilesDropped.Emit({});
  EXPECT_EQ(form.txtSFName.Text.Get(), "C:\\in\\a.tvz");
}

TEST(SegmentBytesTest, AreMegabytesRoundedToTheNearestByte) {
  EXPECT_EQ(SegmentBytes("1.38"), 1447035);
  EXPECT_EQ(SegmentBytes("799"), 837812224);
  EXPECT_EQ(SegmentBytes("699"), 732954624);
  EXPECT_EQ(SegmentBytes("649"), 680525824);
  EXPECT_EQ(SegmentBytes("99"), 103809024);
  EXPECT_EQ(SegmentBytes("249"), 261095424);
  EXPECT_EQ(SegmentBytes("749"), 785383424);
}

TEST(SegmentBytesTest, HalvesGoToTheEvenByte) {
  // One byte is 2^-20 MB = 0.00000095367431640625.
  EXPECT_EQ(SegmentBytes("0.000000476837158203125"), 0);
  EXPECT_EQ(SegmentBytes("0.000001430511474609375"), 2);
  EXPECT_EQ(SegmentBytes("0.000002384185791015625"), 2);
  EXPECT_EQ(SegmentBytes("0.00000048"), 1);
}

TEST(SegmentBytesTest, ATextCountsAsFarAsItIsANumber) {
  EXPECT_EQ(SegmentBytes("abc"), 0);
  EXPECT_EQ(SegmentBytes(""), 0);
  EXPECT_EQ(SegmentBytes("2 MB"), 2097152);
  EXPECT_EQ(SegmentBytes(" 1.5x"), 1572864);
  EXPECT_EQ(SegmentBytes("1,38"), 1048576);
  EXPECT_EQ(SegmentBytes("-1"), -1048576);
}

TEST(SegmentBytesTest, TwoGigabytesOverflow) {
  EXPECT_EQ(SegmentBytes("2047.9999"), 2147483543);
  for (const char* size : {"2048", "3891", "8601", "1e300", "1e999", "-2049"}) {
    EXPECT_EQ(RaisedBy([&] { SegmentBytes(size); }), 6) << size;
  }
  EXPECT_EQ(SegmentBytes("-2048"), -2147483647 - 1);
}

}  // namespace
}  // namespace tarnvale::testing
