// The file and folder dialogs.
#pragma once

#include <QString>

#include <functional>

#include "platform/dialogs.h"
#include "platform/qt/qt_window_host.h"

class QFileDialog;

namespace tarnvale {

/// Translates between the program's paths and the desktop's.
struct PathTranslation {
  /// A native path in the program's path language.
  std::function<Path(const std::string& native)> to_program;
  /// The native path of one that exists; empty when there is none.
  std::function<std::string(const Path& path)> to_native;
};

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
  void StartAt(QFileDialog& dialog, const FileDialogRecord& record);
  /// The chosen path; empty on a cancel.
  Path Run(QFileDialog& dialog);

  QtWindowHost& windows_;
  PathTranslation paths_;
  /// The native folder shown last.
  QString last_folder_;
};

}  // namespace tarnvale
