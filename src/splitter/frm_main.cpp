#include "splitter/frm_main.h"

#include <vector>

#include "ui/file_dialog.h"

namespace tarnvale {

frmMain::frmMain(Machine& machine)
    : machine_(machine),
      parts_(machine.files, machine.open_files, machine.loop,
             {Text3.Text.Target(), Text2.Text.Target(),
              [this](std::int16_t percent) { spProg(percent); }}),
      Timer1(machine.loop.Timers(), 200, true) {
  LayOut(*this);
  WireCommands();
  WireFiles();
  Timer1.Tick.Listen([this] { FollowFields(); });
  // The record outlives its window: nothing may go on ticking in it.
  Closed.Listen([this] { Timer1.Enabled = false; });
  Combo1.Rows.Assign({"Floppy Disk 1.44 MBs", "CD-ROM 800 MBs", "CD-ROM 700 MBs", "CD-ROM 650 MBs",
                      "DVD-ROM 3.8 GBs", "DVD-ROM DL 8.4 GBs", "Zip Disk 100 MBs",
                      "Zip Disk 250 MBs", "Zip Disk 750 MBs", "Manual Size"});
}

void frmMain::WireCommands() {
  Label41.Clicked.Listen([this] { ShowTask(true); });
  Label42.Clicked.Listen([this] { ShowTask(false); });
  Label3.Clicked.Listen([this] { Close(); });
  chameleonButton2.Click.Listen([this] { SplitChosenFile(); });
  chameleonButton1.Click.Listen([this] { JoinChosenParts(); });
}

void frmMain::ShowTask(bool splitting) {
  GroupBox1.Visible = splitting;
  GroupBox2.Visible = !splitting;
}

void frmMain::WireFiles() {
  chameleonButton3.Click.Listen([this] { ChooseFile("Open To Split", txtSFName); });
  chameleonButton5.Click.Listen([this] { ChooseFile("Open", txtSegfname); });
  for (TextBox* field : {&txtSFName, &txtSegfname}) {
    field->AcceptsFiles = true;
    field->FilesDropped.Listen([field](const std::vector<Path>& files) {
      if (!files.empty()) field->Text = files.front();
    });
  }
}

void frmMain::ChooseFile(const char* title, TextBox& field) {
  CFileDialog dialog(machine_);
  dialog.DialogTitle = title;
  dialog.Filter = "Tarnvale Compressed File (*.tvz)|*.tvz|All Files (*.*)|*.*";
  dialog.FilterIndex = 0;
  dialog.flags = kCreatePrompt | kFileMustExist | kHideReadOnlyBox;
  dialog.hWndParent = this;
  if (dialog.Show(true)) field.Text = dialog.FileName;
}

void frmMain::spProg(std::int16_t percent) {
  picProgress.Show(percent);
  if (XP_ProgressBar1.Value == XP_ProgressBar1.Max) XP_ProgressBar1.Value = 0;
  XP_ProgressBar1.Value = XP_ProgressBar1.Value + 25;
  XP_ProgressBar2.Value = percent;
  // Required: so the bar stays full at the end of a split or join.
  if (XP_ProgressBar2.Value == 0) XP_ProgressBar2.Value = 100;
}

}  // namespace tarnvale
