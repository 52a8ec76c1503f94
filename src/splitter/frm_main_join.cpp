// The join command.
#include "base/failure.h"
#include "base/numbers.h"
#include "splitter/frm_main.h"
#include "ui/file_dialog.h"

namespace tarnvale {

void frmMain::JoinChosenParts() {
  chameleonButton1.Enabled = false;
  Path part = txtSegfname.Text;
  std::int16_t part_count = 0;
  // Required: a join that fails says nothing, and leaves the button to the timer.
  if (parts_.JoinFile(part, part_count) != PartsCode::kDone) return;
  StoreJoinedFile(part_count);
  chameleonButton1.Enabled = true;
}

// Moves the joined file to where the user wants it. Failures are passed over.
void frmMain::StoreJoinedFile(std::int16_t part_count) {
  PassedOver pass;
  CommonDialog dialog(machine_);
  dialog.CancelError = true;
  dialog.Filter = "Tarnvale Compressed File (*.tvz)|*.tvz";
  dialog.DefaultExt = ".tvz";
  pass.Step([&] { dialog.ShowSave(); });
  if (pass.StandingError()) {
    // Required: the words about failed joins stand here and only here, though
    // the join succeeded.
    machine_.boxes.Show({.text = "An Error Has Occured!\n"
                                 "Check That All Fragments Are In The Same Directory.\n"
                                 "Or Make Sure That The Unsplit Original File Is Not In The Same "
                                 "Directory",
                         .icon = BoxIcon::kExclamation,
                         .title = "Error"});
    return;
  }
  Text1.Text = dialog.FileName;
  pass.Step([&] { machine_.files.CopyWhole(Text2.Text, Text1.Text, Rights::kOwner); });
  // Required: whether the copy succeeded isn't checked, before the deletion either.
  if (Text1.Text.Get() != Text2.Text.Get()) {
    pass.Step([&] { machine_.files.Delete(Text2.Text); });
  }
  machine_.boxes.Show({.text = "The Combining Was Completed. The File Was Built From " +
                               ToText(part_count) + " Parts.",
                       .icon = BoxIcon::kInformation,
                       .title = "Successfully Done"});
}

}  // namespace tarnvale
