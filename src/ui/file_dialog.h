// The class around the desktop's open and save dialogs.
#pragma once

#include <cstdint>
#include <string>

#include "ui/machine.h"

namespace tarnvale {

/// The text before the first NUL.
std::string TrimNulls(const std::string& text);

/// A file dialog with its settings as properties. Setting one has no side
/// effect.
class CFileDialog {
 public:
  explicit CFileDialog(Machine& machine) : machine_(machine) {}

  std::string DefaultExt;   ///< added by the dialog to a name without one
  std::string DialogTitle;  ///< empty: the dialog's own
  std::string FileName;     ///< the path, in and out
  std::string FileTitle;    ///< the name without its folder, in and out
  std::string Filter;       ///< pairs of description and pattern, separated by "|"
  std::int16_t FilterIndex = 0;
  std::uint32_t flags = 0;  ///< FileDialogFlag, passed as they stand
  Window* hWndParent = nullptr;
  std::string InitialDir;
  /// Required: stored and returned, and never used.
  std::int16_t MaxFileSize = 0;

  /// Shows the open dialog (true) or the save dialog (false). True when the
  /// user confirmed: FileName and FileTitle are set only then. A name that
  /// doesn't fit the dialog's buffer of 260 characters shows an error box. Yields.
  bool Show(bool open);

 private:
  void Report(const ProgramError& error, const char* procedure);

  Machine& machine_;
};

/// The desktop's common dialog, whose cancel can be an error.
class CommonDialog {
 public:
  /// The number of the error that a cancel raises.
  static constexpr int kCancelled = 32755;

  explicit CommonDialog(Machine& machine) : machine_(machine) {}

  bool CancelError = false;  ///< a cancel raises kCancelled
  std::string DefaultExt;
  std::string DialogTitle;
  std::string FileName;  ///< the path, in and out
  std::string FileTitle;
  std::string Filter;  ///< as in CFileDialog

  /// Each sets FileName and FileTitle when the user confirmed, and leaves them
  /// as they stand on a cancel, which raises kCancelled if CancelError is set.
  /// Raises 5 for a FileName of more than 260 characters. Yields.
  void ShowOpen();
  void ShowSave();

 private:
  void Show(bool (FileDialogs::*dialog)(FileDialogRecord&));

  Machine& machine_;
};

/// Lets the user choose a folder below `prompt`. Empty on a cancel. Yields.
std::string PickFolder(Machine& machine, const std::string& prompt);

}  // namespace tarnvale
