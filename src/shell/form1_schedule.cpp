// The fields of the schedule and the general screens.
#include "shell/form1.h"

namespace tarnvale {

void Form1::WireSchedule() {
  MaskEdBox1.Mask = "##:##";
  MaskEdBox2.Mask = "##:##";
  MaskEdBox1.GotFocus.Listen([this] {
    FieldFocus();
    engine_.scheduler.EnterFixedTime();
  });
  MaskEdBox1.LostFocus.Listen([this] { engine_.scheduler.LeaveFixedTime(); });
  MaskEdBox2.GotFocus.Listen([this] {
    FieldFocus();
    engine_.scheduler.EnterInterval();
  });
  MaskEdBox2.LostFocus.Listen([this] { engine_.scheduler.LeaveInterval(); });
  Optionbutton1.Clicked.Listen([this] { Focus(MaskEdBox1); });
  Optionbutton2.Clicked.Listen([this] { Focus(MaskEdBox2); });
  Optionbutton3.Clicked.Listen([this] { engine_.scheduler.ChooseEveryDay(); });
  // Chosen: the marks of the summary are a display; nobody can tick them.
  for (CheckBox* mark : {&CheckBox9, &CheckBox10, &CheckBox11}) mark->Enabled = false;
}

void Form1::WireGeneral() {
  // Choosing a mode again sets its flags again.
  Option1.Clicked.Listen([this] { settings_.ChooseMode(settings_.BackupMode.Complete); });
  Option2.Clicked.Listen([this] { settings_.ChooseMode(settings_.BackupMode.Incremental); });
  Option3.Clicked.Listen([this] { settings_.ChooseMode(settings_.BackupMode.Sync); });
}

}  // namespace tarnvale
