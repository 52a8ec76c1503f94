// The file and folder dialogs.
#pragma once

#include <QString>

#include <utility>

#include "hosts/qt/path_translation.h"
#include "hosts/qt/qt_window_host.h"
#include "ui/dialogs.h"

namespace tarnvale {

class PathFileDialog;

/// Qt's dialogs: the desktop's own where it has some for Qt.
class QtFileDialogs final : public FileDialogs {
 public:
  /// `windows` must outlive it.
  QtFileDialogs(QtWindowHost& windows, PathTranslation paths)
      : windows_(windows), paths_(std::move(paths)) {}

  bool ShowOpen(FileDialogRecord& record) override;
  bool ShowSave(FileDialogRecord& record) override;
  std::optional<Path> BrowseForFolder(const FolderDialogRecord& record) override;

 private:
  QWidget* OwnerOf(Window* owner) const;
  void StartAt(PathFileDialog& dialog, const FileDialogRecord& record);
  /// The native folder; empty when there is no such folder.
  QString FolderOf(const Path& path) const;
  /// The chosen path; empty on a cancel.
  Path Run(PathFileDialog& dialog);

  QtWindowHost& windows_;
  PathTranslation paths_;
  /// The native folder shown last.
  QString last_folder_;
};

}  // namespace tarnvale
