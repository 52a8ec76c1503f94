// The desktop's dialogs that choose files and folders.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/files.h"

namespace tarnvale {

class Window;

/// Flags of a file dialog, with the values of the classic dialogs. A host may
/// leave one without effect where its dialogs know no such thing.
enum FileDialogFlag : std::uint32_t {
  kHideReadOnlyBox = 0x4,
  kFileMustExist = 0x1000,  ///< the only one that makes an open dialog insist
  kCreatePrompt = 0x2000,   ///< a missing file is agreed to, with a question
};

/// What a file dialog is given and gives back.
struct FileDialogRecord {
  /// The window that owns the dialog, if it is in view; none: the active one.
  Window* owner = nullptr;
  /// Empty: the dialog's own.
  std::string title;
  /// Descriptions and patterns by turns, each ended by a NUL, and the whole by
  /// one more. A last description without a pattern shows all files. Patterns
  /// are separated by ";".
  std::string filter;
  /// The filter chosen at the start, counted from 1; 0 is the first.
  int filter_index = 0;
  std::uint32_t flags = 0;
  /// Added to a name that has no extension, unless there is a file of that very
  /// name to open. A leading point isn't doubled.
  std::string default_ext;
  /// Empty, or no folder: the one shown last.
  Path initial_dir;
  /// The path, in and out, as a buffer filled with NULs. What the dialog gives
  /// back has fewer characters than it. One with "*" or "?" names no file.
  std::string file;
  /// The name without its folder, out, likewise.
  std::string file_title;
};

struct FolderDialogRecord {
  Window* owner = nullptr;
  /// Shown above the tree.
  std::string prompt;
};

class FileDialogs {
 public:
  virtual ~FileDialogs() = default;

  /// Modal to the whole program; each returns when the dialog was closed, and yields meanwhile.
  /// True when the user confirmed; the buffers are changed only then. A file
  /// that would replace another one is confirmed in the dialog. A path
  /// that is longer than the buffer counts as a cancel. Paths of the program's
  /// own language can be typed on every system, and a file that no path can name
  /// can't be chosen.
  virtual bool ShowOpen(FileDialogRecord& record) = 0;
  virtual bool ShowSave(FileDialogRecord& record) = 0;

  /// The path of the chosen folder, without a backslash at its end but for a
  /// drive's root; none on cancel. Folders of the file system only.
  virtual std::optional<Path> BrowseForFolder(const FolderDialogRecord& record) = 0;
};

}  // namespace tarnvale
