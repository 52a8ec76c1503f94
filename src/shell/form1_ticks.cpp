// The ticks of the timers that look after the window.
#include "base/numbers.h"
#include "shell/form1.h"

namespace tarnvale {

void Form1::WireTicks() {
  EngineTicks& ticks = engine_.timers.ticks;
  ticks.MirrorPaneFilters = [this] { MirrorPaneFilters(); };
  ticks.OpenStorageTree = [this] { OpenTree(StorageTree, 3); };
  ticks.OpenRestoreSourceTree = [this] { OpenTree(RestoreSourceTree, 17); };
  ticks.OpenRestoreTargetTree = [this] { OpenTree(RestoreTargetTree, 18); };
  ticks.AdvanceRestoreBar = [this] { AdvanceRestoreBar(); };
  ticks.LinkAutoSettings = [this] { LinkAutoSettings(); };
  ticks.FollowFolderTrees = [this] { FollowFolderTrees(); };
  ticks.ShowWizardPage = [this] { ShowWizardPage(); };
  ticks.ShowSummary = [this] { ShowSummary(); };
  ticks.AllowReport = [this] { AllowReport(); };
  ticks.AllowSyncMode = [this] { AllowSyncMode(); };
}

void Form1::MirrorPaneFilters() {
  // Chosen: the hidden and the read-only flag are the two that follow the first
  // box. Required: the third box isn't read.
  File1.ShowHidden = Check1.Value;
  File1.ShowReadOnly = Check1.Value;
  File1.ShowSystem = Check3.Value;
  Text2.Enabled = Check2.Value;
  File1.Pattern = Check2.Value ? "*" + Text2.Text.Get() + "*" : std::string("*.*");
}

// One shot: the timer's own last act is to disable itself.
void Form1::OpenTree(FolderTree& tree, int timer) {
  Show();
  tree.Start(engine_.machine().files.ProgramFolder());
  engine_.timers.Number(timer).Enabled = false;
}

void Form1::AdvanceRestoreBar() {
  XP_ProgressBar3.Value = XP_ProgressBar3.Value + 1;
}

void Form1::LinkAutoSettings() {
  const bool has_folder = !settings_.CompressDir.Get().empty();
  if (!has_folder) settings_.AutoCompress = false;
  Check6.Enabled = has_folder;
  if (!settings_.AutoCompress) settings_.AutoUpload = false;
  Check7.Enabled = settings_.AutoCompress.Get();
}

void Form1::FollowFolderTrees() {
  Text3.Text = ListTree.SelectedPath;
  File1.Folder = Text3.Text;
  Text27.Text = RestoreSourceTree.SelectedPath;
  Text28.Text = RestoreTargetTree.SelectedPath;
}

void Form1::ShowWizardPage() {
  InTaskBar = true;
  State = WindowState::kNormal;
  Show();
  SwitchTo(Screen::kSchedule, {Screen::kStorage, Screen::kProgress, Screen::kList, Screen::kGeneral,
                               Screen::kAdvanced});
  engine_.timers.WizardPage().Enabled = false;
}

void Form1::ShowSummary() {
  ItemCount.Caption = ToText(static_cast<std::int64_t>(settings_.Entries.Count())) + " Items";
  CheckBox9.Checked = settings_.AutoCompress;
  CheckBox11.Checked = settings_.AutoReport;
  CheckBox10.Checked = settings_.AutoUpload;
  // Required: the caption isn't taken back when the upload goes off.
  if (settings_.AutoUpload) CheckBox10.Caption = "Yes";
}

void Form1::AllowReport() {
  Check12.Enabled = !settings_.SmtpServer.Get().empty() && !settings_.ReportTo.Get().empty();
}

void Form1::AllowSyncMode() {
  const bool one_item = settings_.Entries.Count() == 1;
  // Required: what the mode set stays set when it is taken back.
  if (!one_item) settings_.BackupMode.Sync = false;
  Option3.Enabled = one_item;
}

}  // namespace tarnvale
