#include "shell/form1.h"

#include "base/numbers.h"
#include "shell/program_icon.h"

namespace tarnvale {

Form1::Form1(Engine& engine)
    : engine_(engine),
      settings_(engine.settings),
      run_(engine.run),
      File1(engine.machine().files),
      List1(engine.settings.Entries),
      Text1(engine.settings.DestinationDir),
      Label11(TextRole::kValue, engine.run.SourceCaption),
      Label13(TextRole::kValue, engine.run.TargetCaption),
      Label14(TextRole::kValue, engine.run.StatusCaption),
      XP_ProgressBar1(engine.run.CopyBar),
      XP_ProgressBar2(engine.run.FileBar),
      Optionbutton1(engine.settings.ScheduleAt),
      MaskEdBox1(engine.settings.AlwaysAtText, TextKind::kMasked),
      Optionbutton2(engine.settings.ScheduleEach),
      MaskEdBox2(engine.settings.EachText, TextKind::kMasked),
      Optionbutton3(engine.settings.EveryDay),
      Checkbox2{CheckButton(engine.settings.WeekDays[0]), CheckButton(engine.settings.WeekDays[1]),
                CheckButton(engine.settings.WeekDays[2]), CheckButton(engine.settings.WeekDays[3]),
                CheckButton(engine.settings.WeekDays[4]), CheckButton(engine.settings.WeekDays[5]),
                CheckButton(engine.settings.WeekDays[6])},
      Label58(TextRole::kValue, engine.display.Today),
      Label29(TextRole::kValue, engine.display.Now),
      Label60(TextRole::kValue, engine.display.NextRun),
      Option1(engine.settings.BackupMode.Complete),
      Option2(engine.settings.BackupMode.Incremental),
      Option3(engine.settings.BackupMode.Sync),
      Check5(engine.settings.ShowAlert),
      Checkbox1(engine.settings.SaveLog),
      Check6(engine.settings.AutoCompress),
      Check7(engine.settings.AutoUpload),
      Check12(engine.settings.AutoReport),
      Text5(engine.settings.CompressDir),
      txtServer(engine.settings.SmtpServer),
      txtTo(engine.settings.ReportTo),
      gSysTray(engine.machine(), *this),
      CommonDialog1(engine.machine()) {
  LayOut(*this);
  WireTicks();
  WireScreens();
  WireMenu();
  WireList();
  WireStorage();
  WireSchedule();
  WireGeneral();
  WireExchange();
  WireAdvanced();
  WireTools();
  WireTray();
  WireKeys();
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
  run_.FocusDone = "0";
  File1.Folder = "C:\\";
  engine_.LoadSettings();
  State = WindowState::kMinimized;
  engine_.timers.AutoSettingsLink().Enabled = true;
  Show();
  ListTree.Start(machine.files.ProgramFolder());
  if (dying_) Close();
}

void Form1::WireKeys() {
  KeyDown.Listen([this](KeyEvent& event) { OnKey(event); });
  Activated.Listen([this] { PlaceFirstFocus(); });
}

void Form1::OnKey(KeyEvent& event) {
  if (event.press.key == Key::kDelete && list_has_focus_) {
    event.handled = true;
    RemoveSelectedItems();
  } else if (event.press.key == Key::kEnter) {
    event.handled = true;
    FocusNext();
  }
}

// The focus on a time field chooses the schedule's kind: the stored choice of
// fixed time or interval takes effect here.
void Form1::PlaceFirstFocus() {
  PassedOver pass;
  if (pass.Test([&] { return ToNumber(run_.FocusDone.Get()) == 0; })) {
    pass.Step([&] { Focus(settings_.UseEach ? MaskEdBox2 : MaskEdBox1); });
    run_.FocusDone = "1";
  }
  engine_.machine().loop.Yield();
}

void Form1::FieldFocus() {
  Window* active = engine_.machine().desktop.ActiveWindow;
  Control* focused = (active != nullptr ? active : this)->Focused();
  if (auto* field = dynamic_cast<TextBox*>(focused)) field->SelectAll();
}

void Form1::SaveSettings(const char* announcement) {
  if (!engine_.SaveUnlessObjected()) return;
  engine_.machine().boxes.Show(
      {.text = announcement, .icon = BoxIcon::kInformation, .title = "Settings Saved"});
}

}  // namespace tarnvale
