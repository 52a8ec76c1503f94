#include "shell/screens/restore_screen.h"

#include "base/failure.h"
#include "core/file_control.h"
#include "shell/screens/screen.h"
#include "ui/flush_medium.h"

namespace tarnvale {
namespace {

/// Where the restore bar is when the copy begins. Its way there, a step each
/// 100 ms, is a pause for show.
constexpr int kCopyBegins = 40;

}  // namespace

RestoreScreen::RestoreScreen(Window& window, Engine& engine) : window_(window), engine_(engine) {
  chameleonButton8.Click.Listen([this] { Restore(); });
  engine.timers.At(EngineTimer::kRestoreBar, [this] { AdvanceBar(); });
}

void RestoreScreen::LayOut() {
  GroupBox15.Caption = "Restore A Backup";
  RestoreSourceLabel.Caption = "Choose A Backup To Restore";
  RestoreSourceTree.AccessibleName = "Folders Of Backups";
  Text27.AccessibleName = "Backup To Restore";
  RestoreTargetLabel.Caption = "Choose A Location For Restore";
  RestoreTargetTree.AccessibleName = "Folders For Restore";
  Text28.AccessibleName = "Location For Restore";
  DeviceNote.Caption = "If U3 Device Restore Please Select System Or Documents";
  RestoreStatusLabel.Caption = "Restore Status";
  XP_ProgressBar3.AccessibleName = "Restore Status";
  XP_ProgressBar3.Scrolling = 9;
  chameleonButton8.Caption = "Restore My Backup Now";
  // They follow the trees.
  for (TextBox* field : {&Text27, &Text28}) field->ReadOnly = true;
  chameleonButton8.ButtonType = kButtonType;

  Control* screen = &GroupBox15;
  window_.Place({
      {screen, nullptr, kScreen},
      {&RestoreSourceLabel, screen, {16, 28, 300, 20}},
      {&Picture2, screen, {16, 54, 300, 278}},
      {&RestoreSourceTree, &Picture2, {0, 0, 300, 278}},
      {&Text27, screen, {16, 342, 300, 24}},
      {&RestoreTargetLabel, screen, {332, 28, 300, 20}},
      {&Picture3, screen, {332, 54, 300, 278}},
      {&RestoreTargetTree, &Picture3, {0, 0, 300, 278}},
      {&Text28, screen, {332, 342, 300, 24}},
      {&DeviceNote, screen, {16, 382, 616, 20}},
      {&RestoreStatusLabel, screen, {16, 418, 616, 20}},
      {&XP_ProgressBar3, screen, {16, 444, 616, 22}},
      {&chameleonButton8, screen, {16, 486, 250, 30}},
  });
}

void RestoreScreen::AdvanceBar() {
  XP_ProgressBar3.Value = XP_ProgressBar3.Value + 1;
}

void RestoreScreen::FollowTrees() {
  Text27.Text = RestoreSourceTree.SelectedPath;
  Text28.Text = RestoreTargetTree.SelectedPath;
}

// Any error ends it silently.
void RestoreScreen::Restore() {
  PassedOver().Step([this] {
    Machine& machine = engine_.machine();
    XP_ProgressBar3.Value = 0;
    if (Text27.Text.Get().empty() || Text28.Text.Get().empty()) {
      machine.loop.Yield();
      return;
    }
    Timer& show = engine_.timers[EngineTimer::kRestoreBar];
    show.Enabled = true;
    // Required: exactly this value; a second restore inside sets the bar back.
    while (XP_ProgressBar3.Value != kCopyBegins) {
      if (machine.loop.IsEnding()) return;
      machine.loop.WaitPass();
    }
    // A timer writes the two fields while the copy yields.
    const Path source = Text27.Text.Get();
    const Path target = Text28.Text.Get();
    FileControl(machine.files, machine.boxes, machine.loop)
        .CopyFolderTo(source, target,
                      {.move = false, .overwrite = true, .rights = Rights::kNewFile});
    // Chosen: the box asks for the drive to be pulled out, so everything is on
    // it. A medium that can't be flushed changes nothing.
    PassedOver().Step([&] { FlushMedium(machine.files, machine.loop, target); });
    if (machine.loop.IsEnding()) return;
    show.Enabled = false;
    XP_ProgressBar3.Value = 100;
    machine.boxes.Show({.text = "Please Eject The U3 Smart Drive For Changes To Take Effect.",
                        .icon = BoxIcon::kInformation,
                        .title = "Tarnvale"});
  });
}

}  // namespace tarnvale
