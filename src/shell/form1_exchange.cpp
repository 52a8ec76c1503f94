// Settings out and in, and the restore of a backup.
#include "base/failure.h"
#include "shell/form1.h"
#include "userdata/file_control.h"

namespace tarnvale {
namespace {

constexpr const char* kSettingsFilter = "Tarnvale Setting Files (*.ini)|*.ini";
constexpr const char* kSettingsExtension = ".ini";

/// Where the restore bar stands when the copy begins. Its way there, a step each
/// 100 ms, is a pause for show.
constexpr int kCopyBegins = 40;

// With its backslash; empty when the path has none.
Path FolderOf(const Path& file) {
  return file.substr(0, file.rfind('\\') + 1);
}

void ClearReadOnly(FileSystem& files, const Path& file) {
  const int value = files.Attributes(file);
  if ((value & attribute::kReadOnly) == 0) return;
  files.SetAttributes(file, value & ~attribute::kReadOnly);
}

}  // namespace

void Form1::WireExchange() {
  chameleonButton2.Click.Listen([this] { ExportSettings(); });
  chameleonButton3.Click.Listen([this] { ImportSettings(); });
  chameleonButton8.Click.Listen([this] { Restore(); });
}

void Form1::PrepareSettingsDialog() {
  CommonDialog1.CancelError = true;
  CommonDialog1.Filter = kSettingsFilter;
  CommonDialog1.DefaultExt = kSettingsExtension;
  // Chosen: an empty name. A click too many must not write over a file.
  CommonDialog1.FileName.clear();
}

// Required: the file on the medium goes out, not what is set now. A failed copy
// leaves the first mark, and an error stands to the end.
void Form1::ExportSettings() {
  for (CheckBox* mark : {&CheckBox5, &CheckBox6}) mark->Checked = false;
  for (Label* label : {&Label30, &Label61}) label->Caption = ".";
  PassedOver pass;
  PrepareSettingsDialog();
  pass.Step([&] { CommonDialog1.ShowSave(); });
  if (!pass.StandingError()) {
    Text8.Text = CommonDialog1.FileName;
    CheckBox5.Checked = true;
    Label30.Caption = "Files Status OK!";
    pass.Step([&] { engine_.machine().files.CopyWhole(SettingsFile(), Text8.Text); });
  }
  if (!pass.StandingError()) {
    // Chosen: what is announced next has reached the medium, if it can.
    PassedOver().Step([&] { engine_.machine().files.Flush(FolderOf(Text8.Text)); });
    CheckBox6.Checked = true;
    Label61.Caption = "Settings Exported OK!";
  }
}

// Required: nothing is examined and nothing is loaded again.
void Form1::ImportSettings() {
  for (CheckBox* mark : {&CheckBox7, &CheckBox8}) mark->Checked = false;
  for (Label* label : {&Label63, &Label62}) label->Caption = ".";
  PassedOver pass;
  PrepareSettingsDialog();
  pass.Step([&] { CommonDialog1.ShowOpen(); });
  if (!pass.StandingError()) {
    Text9.Text = CommonDialog1.FileName;
    pass.Step([&] { engine_.machine().files.CopyWhole(Text9.Text, SettingsFile()); });
    CheckBox7.Checked = true;
    Label63.Caption = "Files Status OK! - Restart Application";
  }
  if (!pass.StandingError()) {
    FinishImportedFile();
    CheckBox8.Checked = true;
    Label62.Caption = "Settings Imported OK!";
  }
}

// Neither step is told in words, and neither changes the marks.
void Form1::FinishImportedFile() {
  FileSystem& files = engine_.machine().files;
  // Chosen: settings that came from a read-only medium can be saved again.
  PassedOver().Step([&] { ClearReadOnly(files, SettingsFile()); });
  // Chosen: what is announced next has reached the medium, if it can.
  PassedOver().Step([&] { files.Flush(FolderOf(SettingsFile())); });
}

Path Form1::SettingsFile() const {
  return settings_.DataFolder.Get() + "\\Tarnvale.ini";
}

// Any error ends it silently.
void Form1::Restore() {
  PassedOver().Step([this] {
    Machine& machine = engine_.machine();
    XP_ProgressBar3.Value = 0;
    if (Text27.Text.Get().empty() || Text28.Text.Get().empty()) {
      machine.loop.Yield();
      return;
    }
    Timer& show = engine_.timers.RestoreShow();
    show.Enabled = true;
    // Required: exactly this value; a second restore inside sets the bar back.
    while (XP_ProgressBar3.Value != kCopyBegins) {
      if (machine.loop.IsEnding()) return;
      machine.loop.WaitPass();
    }
    // A timer writes the two fields while the copy yields.
    const Path source = Text27.Text.Get();
    const Path target = Text28.Text.Get();
    FileControl(machine).CopyFolderTo(source, target, {.move = false, .overwrite = true});
    // Chosen: the box asks for the drive to be pulled out, so everything is on
    // it. A medium that can't be flushed changes nothing.
    PassedOver().Step([&] { machine.files.Flush(target); });
    show.Enabled = false;
    XP_ProgressBar3.Value = 100;
    machine.boxes.Show({.text = "Please Eject The U3 Smart Drive For Changes To Take Effect.",
                        .icon = BoxIcon::kInformation,
                        .title = "Tarnvale"});
  });
}

}  // namespace tarnvale
