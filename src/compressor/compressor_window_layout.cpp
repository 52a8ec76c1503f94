// The layout of the compressor: places in pixels at 96 dpi, in tab order.
#include <array>

#include "compressor/compressor_window.h"

namespace tarnvale {
namespace {

// 9810 by 4170 twips.
constexpr Size kClient{654, 278};
constexpr Rect kTaskPanel{0, 0, 224, 278};
// Both panels have the same size and the same place.
constexpr Rect kPanel{236, 10, 406, 258};

void LayOutTaskPanel(compression& w) {
  w.Label43.Caption = "Compression Tasks";
  w.Label41.Caption = "Compress Backup Directory";
  w.Label42.Caption = "Decompress A Selected  File";
  w.Label47.Caption = "Other Tasks";
  w.Label49.Caption = "Upload Compressed File";
  w.Label1.Caption = "Split A Compressed File";
  w.Label2.Caption = "Quit This Compression";
  w.TaskPanel.Background = PictureBox::Ground::kTaskPanel;

  Control* panel = &w.TaskPanel;
  w.Place({
      {panel, nullptr, kTaskPanel},
      {&w.Label43, panel, {16, 16, 192, 24}},
      {&w.Label41, panel, {24, 48, 184, 20}},
      {&w.Label42, panel, {24, 76, 184, 20}},
      {&w.Label47, panel, {16, 116, 192, 24}},
      {&w.Label49, panel, {24, 148, 184, 20}},
      {&w.Label1, panel, {24, 176, 184, 20}},
      {&w.Label2, panel, {24, 204, 184, 20}},
  });
}

// A panel's parts, its rows from top to bottom.
struct PanelParts {
  GroupBox& frame;
  chameleonButton& button;
  std::array<CheckBox*, 5> rows;
  TextBox& message;
  XP_ProgressBar& bar;
};

void LayOutPanel(compression& w, const PanelParts& parts) {
  parts.button.ButtonType = 3;
  parts.message.ReadOnly = true;
  parts.message.AccessibleName = "Message";
  parts.bar.Scrolling = 9;
  parts.bar.AccessibleName = "Progress";

  Control* panel = &parts.frame;
  w.Place({{panel, nullptr, kPanel}, {&parts.button, panel, {16, 28, 300, 30}}});
  int top = 68;
  for (CheckBox* row : parts.rows) {
    // Chosen: a row is a display; nobody can tick it.
    row->Enabled = false;
    row->Visible = false;
    w.Place({{row, panel, {20, top, 370, 20}}});
    top += 24;
  }
  w.Place({{&parts.message, panel, {16, 192, 374, 24}}, {&parts.bar, panel, {16, 224, 374, 22}}});
}

// What no panel shows has texts only.
void SetHiddenTexts(compression& w) {
  w.Frame3.Caption = "Read File List From Archive";
  w.Frame3.Visible = false;
  w.Command3.Caption = "Read File List From Archive";
  w.Command4.Caption = "Extract Selected File From Archive";
  w.Text2.Text = "<Status>";
  w.Text3.Text = "%";
  w.Text1.Text = "Select Folder To Compress";
}

}  // namespace

void LayOut(compression& w) {
  w.Caption = "Tarnvale Compressor";
  w.Frame = WindowFrame::kFixed;
  w.ClientSize = kClient;
  LayOutTaskPanel(w);

  w.GroupBox1.Caption = "Create A Compressed Backup";
  w.Command1.Caption = "Compress Backed Up Files";
  LayOutPanel(w, {.frame = w.GroupBox1,
                  .button = w.Command1,
                  .rows = {&w.CheckBox1, &w.CheckBox2, &w.CheckBox3, &w.CheckBox4, &w.CheckBox5},
                  .message = w.Text4,
                  .bar = w.XP_ProgressBar1});

  w.GroupBox2.Caption = "Decompress A Compressed Backup";
  w.Command2.Caption = "Decompress A Compressed Backed Up File";
  LayOutPanel(w, {.frame = w.GroupBox2,
                  .button = w.Command2,
                  .rows = {&w.CheckBox10, &w.CheckBox9, &w.CheckBox8, &w.CheckBox7, &w.CheckBox6},
                  .message = w.Text6,
                  .bar = w.XP_ProgressBar2});
  w.GroupBox2.Visible = false;
  SetHiddenTexts(w);
}

}  // namespace tarnvale
