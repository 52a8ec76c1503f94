#include "shell/screens/schedule_screen.h"

#include "base/numbers.h"
#include "shell/screens/screen.h"

namespace tarnvale {

ScheduleScreen::ScheduleScreen(Window& window, Engine& engine)
    : Optionbutton1(engine.settings.ScheduleAt),
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
      window_(window),
      engine_(engine) {
  WireTimes();
  Optionbutton3.Clicked.Listen([this] { engine_.scheduler.ChooseEveryDay(); });
  // Chosen: the marks of the summary are a display; nobody can tick them.
  for (CheckBox* mark : {&CheckBox9, &CheckBox10, &CheckBox11}) mark->Enabled = false;
  engine.screens.FocusIntervalField = [this] { window_.Focus(MaskEdBox2); };
  engine.timers.At(EngineTimer::kSummary, [this] { ShowSummary(); });
}

void ScheduleScreen::WireTimes() {
  MaskEdBox1.Mask = "##:##";
  MaskEdBox2.Mask = "##:##";
  MaskEdBox1.GotFocus.Listen([this] {
    FieldFocus(engine_.machine().desktop, window_);
    engine_.scheduler.EnterFixedTime();
  });
  MaskEdBox1.LostFocus.Listen([this] { engine_.scheduler.LeaveFixedTime(); });
  MaskEdBox2.GotFocus.Listen([this] {
    FieldFocus(engine_.machine().desktop, window_);
    engine_.scheduler.EnterInterval();
  });
  MaskEdBox2.LostFocus.Listen([this] { engine_.scheduler.LeaveInterval(); });
  Optionbutton1.Clicked.Listen([this] { window_.Focus(MaskEdBox1); });
  Optionbutton2.Clicked.Listen([this] { window_.Focus(MaskEdBox2); });
}

void ScheduleScreen::LayOut() {
  Caption();
  window_.Place({{&GroupBox4, nullptr, kScreen}});
  LayOutSchedule();
  LayOutSummary();
}

void ScheduleScreen::Caption() {
  GroupBox10.Caption = "Schedule For A Backup";
  Optionbutton1.Caption = "Always At This Time:";
  MaskEdBox1.AccessibleName = "Time Of The Backup, Hours And Minutes";
  Optionbutton2.Caption = "Each Time This Interval Has Passed:";
  MaskEdBox2.AccessibleName = "Interval Between Backups, Hours And Minutes";
  DaysLabel.Caption = "On These Days";
  Optionbutton3.Caption = "Every Day";
  GroupBox9.Caption = "Current Information";
  DateLabel.Caption = "Date:";
  TimeLabel.Caption = "Time:";
  NextLabel.Caption = "Next Schedule:";
  GroupBox8.Caption = "Backup && Tasks Information";
  ItemsLabel.Caption = "Items For Backup:";
  ReportsLabel.Caption = "E-Mail Reports:";
  CompressionLabel.Caption = "Compression Occurs:";
  UploadLabel.Caption = "FTP Server Upload Occurs:";
  DrivesLabel.Caption = "U3 Smart Drives Backups";
  CheckBox11.AccessibleName = "E-Mail Reports";
  CheckBox9.AccessibleName = "Compression Occurs";
  CheckBox10.AccessibleName = "FTP Server Upload Occurs";
}

void ScheduleScreen::LayOutSchedule() {
  static constexpr std::array<const char*, 7> kDays = {
      "Every Sunday",   "Every Monday", "Every Tuesday", "Every Wednesday",
      "Every Thursday", "Every Friday", "Every Saturday"};
  Control* schedule = &GroupBox10;
  window_.Place({
      {schedule, &GroupBox4, {16, 20, 616, 240}},
      {&Optionbutton1, schedule, {20, 32, 260, 24}},
      {&MaskEdBox1, schedule, {300, 32, 64, 24}},
      {&Optionbutton2, schedule, {20, 64, 260, 24}},
      {&MaskEdBox2, schedule, {300, 64, 64, 24}},
      {&DaysLabel, schedule, {20, 104, 300, 20}},
      {&Optionbutton3, schedule, {20, 130, 180, 22}},
  });
  // Three columns of days below "Every Day".
  for (std::size_t day = 0; day < kDays.size(); ++day) {
    Checkbox2[day].Caption = kDays[day];
    const int column = static_cast<int>(day) / 3;
    const int row = static_cast<int>(day) % 3;
    window_.Place({{&Checkbox2[day], schedule, {20 + column * 190, 156 + row * 26, 180, 22}}});
  }
}

void ScheduleScreen::LayOutSummary() {
  Control* screen = &GroupBox4;
  Control* information = &GroupBox9;
  Control* tasks = &GroupBox8;
  window_.Place({
      {information, screen, {16, 276, 616, 116}},
      {&DateLabel, information, {20, 28, 180, 20}},
      {&Label58, information, {210, 28, 390, 20}},
      {&TimeLabel, information, {20, 54, 180, 20}},
      {&Label29, information, {210, 54, 390, 20}},
      {&NextLabel, information, {20, 80, 180, 20}},
      {&Label60, information, {210, 80, 390, 20}},
      {tasks, screen, {16, 408, 616, 122}},
      {&ItemsLabel, tasks, {20, 28, 180, 20}},
      {&ItemCount, tasks, {210, 28, 100, 20}},
      {&ReportsLabel, tasks, {20, 56, 180, 20}},
      {&CheckBox11, tasks, {210, 56, 90, 20}},
      {&DrivesLabel, tasks, {20, 84, 180, 20}},
      {&CompressionLabel, tasks, {320, 28, 180, 20}},
      {&CheckBox9, tasks, {510, 28, 90, 20}},
      {&UploadLabel, tasks, {320, 56, 180, 20}},
      {&CheckBox10, tasks, {510, 56, 90, 20}},
  });
}

void ScheduleScreen::ShowSummary() {
  const BackupSettings& settings = engine_.settings;
  ItemCount.Caption = ToText(static_cast<std::int64_t>(settings.Entries.Count())) + " Items";
  SetIfOther(CheckBox9.Checked, settings.AutoCompress.Get());
  SetIfOther(CheckBox11.Checked, settings.AutoReport.Get());
  SetIfOther(CheckBox10.Checked, settings.AutoUpload.Get());
  // Required: the caption isn't taken back when the upload goes off.
  if (settings.AutoUpload) SetIfOther(CheckBox10.Caption, "Yes");
}

}  // namespace tarnvale
