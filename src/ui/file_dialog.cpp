#include "ui/file_dialog.h"

#include <algorithm>
#include <optional>

#include "base/characters.h"
#include "base/failure.h"

namespace tarnvale {
namespace {

/// The size of both buffers of the classic dialogs, in characters: the longest
/// path of the classic file system calls.
constexpr std::size_t kBufferSize = 260;

// "|" to NUL, and two NULs behind.
std::string WithNuls(std::string filter) {
  std::replace(filter.begin(), filter.end(), '|', '\0');
  return filter.append(2, '\0');
}

// A text that is longer makes the count of filling NULs negative.
std::string Buffer(const std::string& text) {
  if (CountCharacters(text) > kBufferSize) throw ProgramError(kInvalidCall);
  return PaddedWithNuls(text, kBufferSize);
}

}  // namespace

std::string TrimNulls(const std::string& text) {
  return text.substr(0, text.find('\0'));
}

// A statement that fails is shown in a box, and the next one runs.
bool CFileDialog::Show(bool open) {
  const auto step = [this](auto&& statement) {
    try {
      statement();
    } catch (const ProgramError& error) {
      Report(error, "Show");
    }
  };
  FileDialogRecord record{.owner = hWndParent,
                          .title = DialogTitle,
                          .filter = WithNuls(Filter),
                          .filter_index = FilterIndex,
                          .flags = flags,
                          .default_ext = DefaultExt,
                          .initial_dir = InitialDir,
                          .file = {},
                          .file_title = {}};
  step([&] { record.file = Buffer(FileName); });
  step([&] { record.file_title = Buffer(FileTitle); });
  bool confirmed = false;
  step([&] {
    confirmed = open ? machine_.dialogs.ShowOpen(record) : machine_.dialogs.ShowSave(record);
  });
  if (!confirmed) return false;
  FileName = TrimNulls(record.file);
  FileTitle = TrimNulls(record.file_title);
  return true;
}

void CFileDialog::Report(const ProgramError& error, const char* procedure) {
  machine_.boxes.Show(
      {.text = "Error: " + std::to_string(error.Number()) + ". " + error.Description(),
       .title = procedure});
}

void CommonDialog::ShowOpen() {
  Show(&FileDialogs::ShowOpen);
}

void CommonDialog::ShowSave() {
  Show(&FileDialogs::ShowSave);
}

void CommonDialog::Show(bool (FileDialogs::*dialog)(FileDialogRecord&)) {
  FileDialogRecord record{.title = DialogTitle,
                          .filter = WithNuls(Filter),
                          .default_ext = DefaultExt,
                          .initial_dir = {},
                          .file = Buffer(FileName),
                          .file_title = Buffer({})};
  if ((machine_.dialogs.*dialog)(record)) {
    FileName = TrimNulls(record.file);
    FileTitle = TrimNulls(record.file_title);
  } else if (CancelError) {
    throw ProgramError(kCancelled, "CommonDialog", "Cancel was selected.");
  }
}

std::string PickFolder(Machine& machine, const std::string& prompt) {
  return machine.dialogs.BrowseForFolder({.owner = machine.desktop.ActiveWindow, .prompt = prompt})
      .value_or(std::string());
}

}  // namespace tarnvale
