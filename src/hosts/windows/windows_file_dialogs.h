// The file and folder dialogs.
#pragma once

#include "hosts/windows/system_headers.h"

#include <commdlg.h>

#include "hosts/windows/paths.h"
#include "ui/dialogs.h"

namespace tarnvale {

class WindowsWindowHost;

/// The system's common dialogs.
class WindowsFileDialogs final : public FileDialogs {
 public:
  /// Both must outlive it.
  WindowsFileDialogs(WindowsWindowHost& windows, const DrivePaths& drives)
      : windows_(windows), drives_(drives) {}

  bool ShowOpen(FileDialogRecord& record) override;
  bool ShowSave(FileDialogRecord& record) override;
  std::optional<Path> BrowseForFolder(const FolderDialogRecord& record) override;

 private:
  using Dialog = BOOL(WINAPI*)(OPENFILENAMEW*);

  bool Show(Dialog dialog, DWORD flags, FileDialogRecord& record);
  std::wstring FolderOf(const Path& path) const;

  WindowsWindowHost& windows_;
  const DrivePaths& drives_;
};

}  // namespace tarnvale
