#include "registry/registry.h"

#include "base/failure.h"
#include "core/registry_editor.h"
#include "ui/file_dialog.h"

namespace tarnvale {
namespace {

constexpr const char* kWholeRegistry = "Backup All Registry";

}  // namespace

registry::registry(Machine& machine) : Timer1(machine.loop.Timers(), 100, true), machine_(machine) {
  LayOut(*this);
  chameleonButton1.Click.Listen([this] { ChooseFile(); });
  Command1.Click.Listen([this] { SaveBranch(); });
  Timer1.Tick.Listen([this] { FollowFields(); });
  const auto wake_while_seen = [this] { Timer1.WakesLoop = Visible.Get(); };
  wake_while_seen();
  Visible.Changed.Listen(wake_while_seen);
  Combo1.Rows.Assign({kWholeRegistry, "HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER",
                      "HKEY_LOCAL_MACHINE", "HKEY_USERS", "HKEY_CURRENT_CONFIG"});
  Combo1.Text = kWholeRegistry;
}

// Required: the text of a sub-branch that is out of use stays.
void registry::FollowFields() {
  Text4.Text = Combo1.Text.Get();
  SetIfOther(Command1.Enabled, !Text3.Text.Get().empty());
  const bool whole = Combo1.Text.Get() == kWholeRegistry;
  if (whole) Text4.Text = "";
  Text2.Enabled = !whole;
}

void registry::ChooseFile() {
  PassedOver pass;
  CommonDialog dialog(machine_);
  dialog.CancelError = true;
  dialog.Filter = "Registry File (*.reg)|*.reg";
  // Required: the archives' extension, though the filter offers another one.
  dialog.DefaultExt = ".tvz";
  if (pass.Step([&] { dialog.ShowSave(); })) Text3.Text = dialog.FileName;
}

void registry::SaveBranch() {
  if (Text3.Text.Get().empty()) return;
  PassedOver pass;
  // Required: it comes before the export has begun, whatever becomes of that.
  pass.Step([&] {
    machine_.boxes.Show({.text = "Your Registry Has Been Sucessfully Backed Up",
                         .icon = BoxIcon::kInformation,
                         .title = "Registry Backup"});
  });
  pass.Step([&] { machine_.loop.Yield(); });
  pass.Step(
      [&] { machine_.processes.StartMinimized(ExportLine(Text3.Text, Text4.Text, Text2.Text)); });
}

}  // namespace tarnvale
