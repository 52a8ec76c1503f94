// What the buttons do: have a folder chosen, copy, and say that it worked.
#include <array>
#include <cstdint>

#include "base/failure.h"
#include "core/registry_editor.h"
#include "ui/file_dialog.h"
#include "userdata/user_data_window.h"

namespace tarnvale {
namespace {

struct ExplorerFolder {
  TextBox userdata::*place;
  const char* name;
};
constexpr std::array<ExplorerFolder, 4> kExplorerFolders{{
    {&userdata::Text5, "\\IE Favorites"},
    {&userdata::Text16, "\\IE Cookies"},
    {&userdata::Text17, "\\IE History"},
    {&userdata::Text18, "\\IE Temp"},
}};

struct ExpressBranch {
  const char* file;
  const char* branch;
};
constexpr std::array<ExpressBranch, 3> kExpressBranches{{
    {"\\Accounts.reg", "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager"},
    {"\\Settings.reg", "HKEY_CURRENT_USER\\Software\\Microsoft\\Outlook Express"},
    {"\\Identities.reg", "HKEY_CURRENT_USER\\Identities"},
}};

// Required: constants, wherever the system's folder is.
struct SystemFile {
  const char* source;
  const char* name;
};
constexpr std::array<SystemFile, 11> kSystemFiles{{
    {"C:\\Windows\\Explorer.exe", "\\Explorer.exe"},
    {"C:\\Windows\\System.ini", "\\System.ini"},
    {"C:\\Windows\\Regedit.exe", "\\Regedit.exe"},
    {"C:\\Windows\\system32\\Rundll32.exe", "\\Rundll32.exe"},
    {"C:\\Windows\\system32\\command.com", "\\command.com"},
    {"C:\\Windows\\system32\\hal.dll", "\\hal.dll"},
    {"C:\\Windows\\system32\\defrag.exe", "\\defrag.exe"},
    {"C:\\autoexec.bat", "\\autoexec.bat"},
    {"C:\\boot.ini", "\\boot.ini"},
    {"C:\\CONFIG.SYS", "\\CONFIG.SYS"},
    {"C:\\Windows\\system32\\winlogon.exe", "\\winlogon.exe"},
}};

}  // namespace

// Required: a cancel leaves the fields as they are and ends nothing.
void userdata::AskForFolder(std::initializer_list<TextBox*> fields) {
  const Path folder = PickFolder(machine_, "Select A Folder:");
  if (!folder.empty()) {
    for (TextBox* field : fields) field->Text = folder;
  }
  machine_.loop.Yield();
}

// A folder that is there already is a failure like any other, and passed over.
void userdata::MakeFolder(const Path& folder) {
  PassedOver pass;
  pass.Step([&] { machine_.files.CreateFolder(folder); });
}

// Required: the result isn't looked at.
void userdata::CopyOver(const Path& source, const Path& target, Rights rights) {
  // Copies: the fields that they come from may change while the folder's copy
  // yields.
  control_.CopyFolderTo(Path(source), Path(target),
                        {.move = false, .overwrite = true, .rights = rights});
}

void userdata::StartEditor(const std::string& line) {
  PassedOver pass;
  pass.Step([&] { machine_.processes.StartMinimized(line); });
}

// Required: these two come whatever became of the copies.
void userdata::ShowBackedUp() {
  machine_.boxes.Show({.text = "Your User Data Has Been Successfully Backed Up.",
                       .icon = BoxIcon::kInformation,
                       .title = "User Data Backup"});
}

void userdata::ShowRestored() {
  machine_.boxes.Show({.text = "Your User Data Has Been Successfully Restored",
                       .icon = BoxIcon::kInformation,
                       .title = "User Data Restore"});
}

void userdata::BackUpFolder(const Panel& panel) {
  TextBox& chosen = this->*panel.chosen;
  AskForFolder({&chosen});
  CopyOver((this->*panel.profile).Text, chosen.Text.Get() + panel.folder, Rights::kSource);
  ShowBackedUp();
}

// What is chosen is the folder that the backup made, not the one that it was
// made in.
void userdata::RestoreFolder(const Panel& panel) {
  TextBox& chosen = this->*panel.chosen;
  AskForFolder({&chosen});
  CopyOver(chosen.Text, (this->*panel.profile).Text, Rights::kNewFile);
  ShowRestored();
}

void userdata::BackUpExplorer(const Panel&) {
  AskForFolder({&Text6, &Text15});
  // Required: from the field that the last operation left, which after a
  // cancelled second press is the folder itself.
  MakeFolder(Text6.Text.Get() + "\\IE Settings");
  Text6.Text = Text15.Text.Get() + "\\IE Settings";
  for (const ExplorerFolder& folder : kExplorerFolders) {
    CopyOver((this->*folder.place).Text, Text6.Text.Get() + folder.name, Rights::kSource);
  }
  ShowBackedUp();
}

void userdata::RestoreExplorer(const Panel&) {
  AskForFolder({&Text6});
  for (const ExplorerFolder& folder : kExplorerFolders) {
    CopyOver(Text6.Text.Get() + folder.name, (this->*folder.place).Text, Rights::kNewFile);
  }
  ShowRestored();
}

void userdata::BackUpExpress(const Panel&) {
  AskForFolder({&Text9, &Text12});
  MakeFolder(Text9.Text.Get() + "\\Outlook Express Settings");
  Text9.Text = Text12.Text.Get() + "\\Outlook Express Settings";
  CopyOver(Text11.Text, Text9.Text.Get() + "\\OE Identities", Rights::kSource);
  for (const ExpressBranch& part : kExpressBranches) {
    StartEditor(ExportLine(Text9.Text.Get() + part.file, part.branch));
  }
  ShowBackedUp();
}

void userdata::RestoreExpress(const Panel&) {
  AskForFolder({&Text9});
  Text13.Text = Text9.Text.Get() + "\\OE Identities";
  // Required: the only operation that a cancel can keep from going on.
  if (Text9.Text.Get().empty()) return;
  CopyOver(Text13.Text, Text11.Text, Rights::kNewFile);
  for (const ExpressBranch& part : kExpressBranches) {
    StartEditor(ImportLine(Text9.Text.Get() + part.file));
  }
  ShowRestored();
}

void userdata::BackUpSystemFiles(const Panel&) {
  XP_ProgressBar1.Value = 0;
  AskForFolder({&Text14});
  MakeFolder(Text14.Text.Get() + "\\Windows Settings");
  // Required: the field itself, so that a second press that is cancelled goes
  // one level deeper.
  Text14.Text = Text14.Text.Get() + "\\Windows Settings";
  XP_ProgressBar1.Max = static_cast<std::int32_t>(kSystemFiles.size());
  PassedOver pass;
  int done = 0;
  for (const SystemFile& file : kSystemFiles) {
    pass.Step([&] {
      machine_.files.CopyWhole(file.source, Text14.Text.Get() + file.name, Rights::kSource);
    });
    XP_ProgressBar1.Value = ++done;
  }
  XP_ProgressBar1.Value = XP_ProgressBar1.Max;
  ShowBackedUp();
}

}  // namespace tarnvale
