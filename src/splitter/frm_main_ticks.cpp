// The timer that keeps sizes and buttons in step with the fields.
#include "splitter/frm_main.h"

namespace tarnvale {

void frmMain::TakeMedium(const char* row, const char* size_text) {
  if (Combo1.Text.Get() != row) return;
  txtSegSize.Enabled = false;
  txtSegSize.Text = size_text;
  SetIfOther(chameleonButton2.Enabled, true);
}

// Required: all tests, in this order. The file name's has the last word on the
// split button, also while a run has it disabled.
void frmMain::FollowFields() {
  TakeMedium("CD-ROM 800 MBs", "799");
  TakeMedium("CD-ROM 700 MBs", "699");
  TakeMedium("CD-ROM 650 MBs", "649");
  TakeMedium("DVD-ROM 3.8 GBs", "3891");
  TakeMedium("DVD-ROM DL 8.4 GBs", "8601");
  if (txtSegSize.Text.Get() == "0") SetIfOther(chameleonButton2.Enabled, false);
  // Required: not the text that the box begins with.
  if (Combo1.Text.Get() == "Select Disk Spanning") {
    SetIfOther(chameleonButton2.Enabled, false);
    txtSegSize.Text = "0";
  }
  TakeMedium("Zip Disk 100 MBs", "99");
  TakeMedium("Zip Disk 750 MBs", "749");
  TakeMedium("Zip Disk 250 MBs", "249");
  TakeMedium("Floppy Disk 1.44 MBs", "1.38");
  if (Combo1.Text.Get() == "Manual Size") {
    txtSegSize.Enabled = true;
    SetIfOther(chameleonButton2.Enabled, true);
  }
  if (Combo1.Text.Get().empty()) {
    txtSegSize.Enabled = false;
    txtSegSize.Text = "0";
  }
  SetIfOther(chameleonButton2.Enabled, !txtSFName.Text.Get().empty());
  SetIfOther(chameleonButton1.Enabled, !txtSegfname.Text.Get().empty());
}

}  // namespace tarnvale
