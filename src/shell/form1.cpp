#include "shell/form1.h"

#include "base/numbers.h"
#include "shell/program_icon.h"
#include "shell/screens/screen.h"

namespace tarnvale {
namespace {

// Pixels at 96 dpi from the upper left corner.
constexpr Size kClient{896, 568};
constexpr Rect kPanel{0, 0, 224, 568};

}  // namespace

Form1::Form1(Engine& engine)
    : List(*this, engine),
      Storage(*this, engine),
      Progress(*this, engine, Tools),
      Schedule(*this, engine),
      General(*this, engine),
      Advanced(*this, engine, Tools),
      Restore(*this, engine),
      gSysTray(engine.machine(), *this),
      engine_(engine) {
  LayOut();
  WireScreens();
  WireTaskPanel();
  WireMenu();
  WireTray();
  WireTicks();
  KeyDown.Listen([this](KeyEvent& event) { OnKey(event); });
  Activated.Listen([this] { PlaceFirstFocus(); });
}

// The order of the calls is the tab order.
void Form1::LayOut() {
  Caption = "Tarnvale";
  Frame = WindowFrame::kFixed;
  ClientSize = kClient;
  LayOutTaskPanel();
  // Behind the others: some commands leave it standing and show their own.
  Restore.LayOut();
  Schedule.LayOut();
  List.LayOut();
  Storage.LayOut();
  General.LayOut();
  Progress.LayOut();
  Advanced.LayOut();
  // The window opens on the schedule, whose time fields take the first focus.
  for (const Screen screen : kAllScreens) FrameOf(screen).Visible = screen == Screen::kSchedule;
}

void Form1::LayOutTaskPanel() {
  TasksHeading.Caption = "Tarnvale Tasks";
  Label49.Caption = "Perform A Quick Backup";
  Label51.Caption = "Restore A Selected Backup";
  WizardHeading.Caption = "Backup Wizard";
  Label44.Caption = "Schedule My Backup Process";
  Label37.Caption = "Include Files In My Backup List";
  Label36.Caption = "Storage Location For Backup";
  Label45.Caption = "Save My Backup Settings";
  FeaturesHeading.Caption = "Additional Features";
  Label38.Caption = "General && Backup Settings";
  Label39.Caption = "Advanced Auto Settings";
  ToolsHeading.Caption = "Tarnvale Tools";
  Label34.Caption = "User Data Applications";
  Label42.Caption = "Tarnvale Splitter";
  Label56.Caption = "Registry Backup Maker";
  Label46.Caption = "Server Upload && Download";
  Label41.Caption = "Tarnvale Compressor";
  TaskPanel.Background = PictureBox::Ground::kTaskPanel;

  Control* panel = &TaskPanel;
  Place({
      {&TaskPanel, nullptr, kPanel},
      {&TasksHeading, panel, {16, 16, 192, 24}},
      {&Label49, panel, {24, 46, 192, 20}},
      {&Label51, panel, {24, 72, 192, 20}},
      {&WizardHeading, panel, {16, 112, 192, 24}},
      {&Label44, panel, {24, 142, 192, 20}},
      {&Label37, panel, {24, 168, 192, 20}},
      {&Label36, panel, {24, 194, 192, 20}},
      {&Label45, panel, {24, 220, 192, 20}},
      {&FeaturesHeading, panel, {16, 260, 192, 24}},
      {&Label38, panel, {24, 290, 192, 20}},
      {&Label39, panel, {24, 316, 192, 20}},
      {&ToolsHeading, panel, {16, 356, 192, 24}},
      {&Label34, panel, {24, 386, 192, 20}},
      {&Label42, panel, {24, 412, 192, 20}},
      {&Label56, panel, {24, 438, 192, 20}},
      {&Label46, panel, {24, 464, 192, 20}},
      {&Label41, panel, {24, 490, 192, 20}},
  });
}

void Form1::Load() {
  Machine& machine = engine_.machine();
  SetWindowIcon(*this, "AAA");
  if (engine_.Program_Running()) {
    // Required: no early return; the steps below run to their end.
    dying_ = true;
    // The message may stand for long, and without settings yet the watch over the
    // data folder would end the first instance.
    engine_.timers.Stop();
    machine.boxes.Show({.text = "Another Instance Of Tarnvale Is Already Running On This System.",
                        .icon = BoxIcon::kExclamation});
  }
  gSysTray.SourceWindow(this);
  gSysTray.ChangeIcon(Icon);
  engine_.run.FocusDone = "0";
  List.File1.Folder = "C:\\";
  engine_.LoadSettings();
  State = WindowState::kMinimized;
  engine_.timers[EngineTimer::kAutoSettingsLink].Enabled = true;
  Show();
  List.ListTree.Start(machine.files.ProgramFolder());
  if (dying_) Close();
}

void Form1::WireTicks() {
  using enum EngineTimer;
  engine_.timers.At(kStorageTree, [this] { OpenTree(Storage.StorageTree, kStorageTree); });
  engine_.timers.At(kRestoreSourceTree,
                    [this] { OpenTree(Restore.RestoreSourceTree, kRestoreSourceTree); });
  engine_.timers.At(kRestoreTargetTree,
                    [this] { OpenTree(Restore.RestoreTargetTree, kRestoreTargetTree); });
  engine_.timers.At(kFolderTrees, [this] {
    List.FollowTree();
    Restore.FollowTrees();
  });
  engine_.timers.At(kWizardPage, [this] { ShowWizardPage(); });
}

// One shot: the timer's own last act is to disable itself.
void Form1::OpenTree(FolderTree& tree, EngineTimer timer) {
  Show();
  tree.Start(engine_.machine().files.ProgramFolder());
  engine_.timers[timer].Enabled = false;
}

void Form1::OnKey(KeyEvent& event) {
  if (event.press.key == Key::kDelete && List.ListHasFocus()) {
    event.handled = true;
    List.RemoveSelectedItems();
  } else if (event.press.key == Key::kEnter) {
    event.handled = true;
    FocusNext();
  }
}

void Form1::PlaceFirstFocus() {
  PassedOver pass;
  if (pass.Test([&] { return ToNumber(engine_.run.FocusDone.Get()) == 0; })) {
    pass.Step([&] { Schedule.FocusTimeField(); });
    engine_.run.FocusDone = "1";
  }
  engine_.machine().loop.Yield();
}

void Form1::FieldFocus() {
  tarnvale::FieldFocus(engine_.machine().desktop, *this);
}

}  // namespace tarnvale
