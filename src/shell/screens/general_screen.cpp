#include "shell/screens/general_screen.h"

#include "base/failure.h"
#include "base/text.h"
#include "shell/screens/screen.h"
#include "ui/flush_medium.h"

namespace tarnvale {
namespace {

constexpr const char* kSettingsFilter = "Tarnvale Setting Files (*.ini)|*.ini";
constexpr const char* kSettingsExtension = ".ini";

void ClearReadOnly(FileSystem& files, const Path& file) {
  const int value = files.Attributes(file);
  if ((value & attribute::kReadOnly) == 0) return;
  files.SetAttributes(file, value & ~attribute::kReadOnly);
}

}  // namespace

GeneralScreen::GeneralScreen(Window& window, Engine& engine)
    : Option1(engine.settings.BackupMode.Complete),
      Option2(engine.settings.BackupMode.Incremental),
      Option3(engine.settings.BackupMode.Sync),
      Check5(engine.settings.ShowAlert),
      Checkbox1(engine.settings.SaveLog),
      window_(window),
      engine_(engine),
      CommonDialog1(engine.machine()) {
  BackupSettings& settings = engine.settings;
  // Choosing a mode again sets its flags again.
  Option1.Clicked.Listen([&settings] { settings.ChooseMode(settings.BackupMode.Complete); });
  Option2.Clicked.Listen([&settings] { settings.ChooseMode(settings.BackupMode.Incremental); });
  Option3.Clicked.Listen([&settings] { settings.ChooseMode(settings.BackupMode.Sync); });
  chameleonButton2.Click.Listen([this] { ExportSettings(); });
  chameleonButton3.Click.Listen([this] { ImportSettings(); });
  engine.timers.At(EngineTimer::kSyncMode, [this] { AllowSyncMode(); });
}

void GeneralScreen::LayOut() {
  Caption();
  CaptionExchange();
  Control* screen = &GroupBox5;
  window_.Place({
      {screen, nullptr, kScreen},
      {&ModeHeading, screen, {16, 32, 616, 20}},
      {&Option1, screen, {24, 60, 300, 22}},
      {&CompleteNote, screen, {42, 84, 590, 18}},
      {&Option2, screen, {24, 112, 300, 22}},
      {&IncrementalNote, screen, {42, 136, 590, 18}},
      {&Option3, screen, {24, 164, 300, 22}},
      {&SyncNote, screen, {42, 188, 590, 18}},
      {&OptionsHeading, screen, {16, 232, 616, 20}},
      {&Check5, screen, {24, 260, 400, 22}},
      {&Checkbox1, screen, {24, 288, 400, 22}},
      {&ExchangeHeading, screen, {16, 346, 616, 20}},
      {&chameleonButton2, screen, {24, 376, 250, 30}},
      {&CheckBox5, screen, {292, 374, 20, 20}},
      {&Label30, screen, {318, 374, 314, 20}},
      {&CheckBox6, screen, {292, 398, 20, 20}},
      {&Label61, screen, {318, 398, 314, 20}},
      {&chameleonButton3, screen, {24, 442, 250, 30}},
      {&CheckBox7, screen, {292, 440, 20, 20}},
      {&Label63, screen, {318, 440, 314, 20}},
      {&CheckBox8, screen, {292, 464, 20, 20}},
      {&Label62, screen, {318, 464, 314, 20}},
      {&Text8, screen, {16, 500, 100, 24}},
      {&Text9, screen, {124, 500, 100, 24}},
  });
}

void GeneralScreen::Caption() {
  GroupBox5.Caption = "General && Backup Settings";
  ModeHeading.Caption = "Select A Backup Mode";
  Option1.Caption = "Brenlow Mode";
  CompleteNote.Caption =
      "Copies every single file of the list at each backup; of a whole folder, what has changed.";
  Option2.Caption = "Fennick Mode";
  IncrementalNote.Caption = "Copies a single file only when it has changed since its last backup.";
  Option3.Caption = "Tolvern Mode";
  SyncNote.Caption =
      "Keeps one folder and the storage location in step, both ways. Needs a list of one item.";
  OptionsHeading.Caption = "General Options";
  Check5.Caption = "Show Visual Notification Upon Backup";
  Checkbox1.Caption = "Automatically Save A Backup Log File";
}

void GeneralScreen::CaptionExchange() {
  ExchangeHeading.Caption = "Export && Import My Backup Settings";
  chameleonButton2.Caption = "Export My Current Settings";
  chameleonButton3.Caption = "Import My Saved Settings";
  // Chosen: a mark is a display; nobody can tick it.
  for (CheckBox* mark : {&CheckBox5, &CheckBox6, &CheckBox7, &CheckBox8}) mark->Enabled = false;
  CheckBox5.AccessibleName = "File To Export To";
  CheckBox6.AccessibleName = "Settings Exported";
  CheckBox7.AccessibleName = "File To Import";
  CheckBox8.AccessibleName = "Settings Imported";
  // Keep what was chosen, and are never seen.
  for (TextBox* field : {&Text8, &Text9}) field->Visible = false;
  for (chameleonButton* button : {&chameleonButton2, &chameleonButton3}) {
    button->ButtonType = kButtonType;
  }
}

void GeneralScreen::AllowSyncMode() {
  const bool one_item = engine_.settings.Entries.Count() == 1;
  // Required: what the mode set stays set when it is taken back.
  if (!one_item) engine_.settings.BackupMode.Sync = false;
  Option3.Enabled = one_item;
}

void GeneralScreen::PrepareSettingsDialog() {
  CommonDialog1.CancelError = true;
  CommonDialog1.Filter = kSettingsFilter;
  CommonDialog1.DefaultExt = kSettingsExtension;
  // Chosen: an empty name. A click too many must not write over a file.
  CommonDialog1.FileName.clear();
}

// Required: the file on the medium goes out, not what is set now. A failed copy
// leaves the first mark, and an error stays to the end.
void GeneralScreen::ExportSettings() {
  for (CheckBox* mark : {&CheckBox5, &CheckBox6}) mark->Checked = false;
  for (Label* label : {&Label30, &Label61}) label->Caption = ".";
  PassedOver pass;
  PrepareSettingsDialog();
  pass.Step([&] { CommonDialog1.ShowSave(); });
  if (!pass.StandingError()) {
    Text8.Text = CommonDialog1.FileName;
    CheckBox5.Checked = true;
    Label30.Caption = "Files Status OK!";
    pass.Step([&] {
      engine_.machine().files.CopyWhole(engine_.settings.SettingsFile(), Text8.Text,
                                        Rights::kOwner);
    });
  }
  if (!pass.StandingError()) {
    // Chosen: what is announced next has reached the medium, if it can.
    FlushFolder(FolderOf(Text8.Text.Get()));
    CheckBox6.Checked = true;
    Label61.Caption = "Settings Exported OK!";
  }
}

// Required: nothing is examined and nothing is loaded again.
void GeneralScreen::ImportSettings() {
  for (CheckBox* mark : {&CheckBox7, &CheckBox8}) mark->Checked = false;
  for (Label* label : {&Label63, &Label62}) label->Caption = ".";
  PassedOver pass;
  PrepareSettingsDialog();
  pass.Step([&] { CommonDialog1.ShowOpen(); });
  if (!pass.StandingError()) {
    Text9.Text = CommonDialog1.FileName;
    // Chosen: whatever others may do with the file that the settings come from.
    pass.Step([&] {
      engine_.machine().files.CopyWhole(Text9.Text, engine_.settings.SettingsFile(),
                                        Rights::kOwner);
    });
    CheckBox7.Checked = true;
    Label63.Caption = "Files Status OK! - Restart Application";
  }
  if (!pass.StandingError()) {
    FinishImportedFile();
    CheckBox8.Checked = true;
    Label62.Caption = "Settings Imported OK!";
  }
}

// Neither step is shown in words, and neither changes the marks.
void GeneralScreen::FinishImportedFile() {
  FileSystem& files = engine_.machine().files;
  // Chosen: settings that came from a read-only medium can be saved again.
  PassedOver().Step([&] { ClearReadOnly(files, engine_.settings.SettingsFile()); });
  // Chosen: what is announced next has reached the medium, if it can.
  FlushFolder(FolderOf(engine_.settings.SettingsFile()));
}

void GeneralScreen::FlushFolder(const Path& folder) {
  Machine& machine = engine_.machine();
  PassedOver().Step([&] { FlushMedium(machine.files, machine.loop, folder); });
}

}  // namespace tarnvale
