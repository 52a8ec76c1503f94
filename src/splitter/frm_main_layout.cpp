// The layout of the splitter's window: places in pixels at 96 dpi, in tab order.
#include "splitter/frm_main.h"

namespace tarnvale {
namespace {

constexpr Size kClient{545, 272};
constexpr Rect kPanel{0, 0, 224, 272};
// Both tasks have the same size and the same place.
constexpr Rect kTask{236, 10, 297, 250};

void LayOutTaskList(frmMain& f) {
  f.TaskPanel.Background = PictureBox::Ground::kTaskPanel;
  f.Label43.Caption = "Commands";
  f.Label41.Caption = "Split A Compressed File";
  f.Label42.Caption = "Join Splitted Compressed Files";
  f.Label3.Caption = "Quit Tarnvale Splitter";
  f.Label1.Caption = "Progress";
  f.XP_ProgressBar1.AccessibleName = "Activity";
  f.XP_ProgressBar2.AccessibleName = "Progress";
  f.XP_ProgressBar1.Scrolling = 9;
  f.XP_ProgressBar2.Scrolling = 9;

  Control* panel = &f.TaskPanel;
  f.Place({
      {panel, nullptr, kPanel},
      {&f.Label43, panel, {16, 16, 192, 24}},
      {&f.Label41, panel, {24, 46, 192, 20}},
      {&f.Label42, panel, {24, 72, 192, 20}},
      {&f.Label3, panel, {24, 98, 192, 20}},
      {&f.Label1, panel, {16, 154, 192, 24}},
      {&f.XP_ProgressBar1, panel, {16, 188, 192, 22}},
      {&f.XP_ProgressBar2, panel, {16, 222, 192, 22}},
  });
}

void LayOutSplitting(frmMain& f) {
  f.GroupBox1.Caption = "Split A Compressed Backup File";
  f.FileNameLabel.Caption = "File Name:";
  f.txtSFName.ToolTip = "Text field for file name";
  f.txtSFName.AccessibleName = "File Name";
  f.chameleonButton3.Caption = "Open Compressed File To Split";
  f.MediumLabel.Caption = "Split File To Fit On:";
  f.Combo1.Text = "Select A Disk Spanning";
  f.Combo1.AccessibleName = "Split File To Fit On";
  f.txtSegSize.Text = "1.38";
  f.txtSegSize.AccessibleName = "Segment Size In Megabytes";
  f.chameleonButton2.Caption = "Split Compressed File Now";

  Control* task = &f.GroupBox1;
  f.Place({
      {task, nullptr, kTask},
      {&f.FileNameLabel, task, {16, 28, 265, 18}},
      {&f.txtSFName, task, {16, 48, 265, 24}},
      {&f.chameleonButton3, task, {16, 80, 265, 28}},
      {&f.MediumLabel, task, {16, 128, 265, 18}},
      {&f.Combo1, task, {16, 148, 185, 24}},
      {&f.txtSegSize, task, {209, 148, 72, 24}},
      {&f.chameleonButton2, task, {16, 206, 265, 28}},
  });
}

void LayOutJoining(frmMain& f) {
  f.GroupBox2.Caption = "Join A Splitted Compressed Backup File";
  f.PartNameLabel.Caption = "Split File Name:";
  f.txtSegfname.ToolTip = "Text field for segment file to be merged";
  f.txtSegfname.AccessibleName = "Split File Name";
  f.chameleonButton5.Caption = "Open Splitted File To Join";
  f.chameleonButton1.Caption = "Join This Splitted File Now";

  Control* task = &f.GroupBox2;
  f.Place({
      {task, nullptr, kTask},
      {&f.PartNameLabel, task, {16, 28, 265, 18}},
      {&f.txtSegfname, task, {16, 48, 265, 24}},
      {&f.chameleonButton5, task, {16, 80, 265, 28}},
      {&f.chameleonButton1, task, {16, 206, 265, 28}},
  });
}

}  // namespace

void LayOut(frmMain& f) {
  f.Caption = "Tarnvale Splitter";
  f.Frame = WindowFrame::kFixed;
  f.ClientSize = kClient;
  LayOutTaskList(f);
  LayOutSplitting(f);
  LayOutJoining(f);
  for (chameleonButton* button :
       {&f.chameleonButton1, &f.chameleonButton2, &f.chameleonButton3, &f.chameleonButton5}) {
    button->ButtonType = 3;
  }
  f.GroupBox2.Visible = false;
  f.Text2.Text = "Text2";
  f.Text1.Text = "Text1";
}

}  // namespace tarnvale
