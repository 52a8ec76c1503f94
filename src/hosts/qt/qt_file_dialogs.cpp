#include "hosts/qt/qt_file_dialogs.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>

#include <cstddef>

#include "hosts/qt/path_file_dialog.h"
#include "hosts/qt/qt_text.h"
#include "ui/dialog_record.h"

namespace tarnvale {
namespace {

// "Archives (*.tvz)" and "*.tvz" become one name filter of Qt; its part in
// round brackets is the pattern.
QString NameFilter(const FileFilter& filter) {
  QString text = ToQt(filter.description);
  const qsizetype bracket = text.lastIndexOf('(');
  if (bracket > 0 && text.endsWith(')')) text.truncate(bracket);
  QStringList globs;
  for (const std::string& pattern : filter.patterns) {
    globs << (pattern == "*.*" ? QString("*") : ToQt(pattern));
  }
  return text.trimmed() + " (" + globs.join(' ') + ")";
}

// Offers to create a missing file, as the classic flag wants it.
bool AgreesToMissing(QWidget* owner, const FileDialogRecord& record, const Path& missing) {
  const std::string question = QuestionOfMissing(record, missing);
  return question.empty() ||
         QMessageBox::question(owner, QFileDialog::tr("Open"), ToQt(question)) == QMessageBox::Yes;
}

void Prepare(PathFileDialog& dialog, const FileDialogRecord& record) {
  if (!record.title.empty()) dialog.setWindowTitle(ToQt(record.title));
  dialog.SetDefaultExtension(ToQt(DefaultExtensionOf(record)));
  QStringList filters;
  for (const FileFilter& filter : FiltersOf(record)) filters << NameFilter(filter);
  if (filters.isEmpty()) return;
  dialog.setNameFilters(filters);
  const auto count = static_cast<std::size_t>(filters.size());
  dialog.selectNameFilter(filters[static_cast<qsizetype>(FirstFilterOf(record, count))]);
}

}  // namespace

bool QtFileDialogs::ShowOpen(FileDialogRecord& record) {
  QWidget* owner = OwnerOf(record.owner);
  PathFileDialog dialog(owner, paths_);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  const bool must_exist = (record.flags & kFileMustExist) != 0;
  dialog.setFileMode(must_exist ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
  Prepare(dialog, record);
  StartAt(dialog, record);
  const Path chosen = Run(dialog);
  if (chosen.empty()) return false;
  if (paths_.to_native(chosen).empty() && !AgreesToMissing(owner, record, chosen)) {
    return false;
  }
  return GiveBack(record, chosen);
}

bool QtFileDialogs::ShowSave(FileDialogRecord& record) {
  PathFileDialog dialog(OwnerOf(record.owner), paths_);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  Prepare(dialog, record);
  StartAt(dialog, record);
  return GiveBack(record, Run(dialog));
}

std::optional<Path> QtFileDialogs::BrowseForFolder(const FolderDialogRecord& record) {
  PathFileDialog dialog(OwnerOf(record.owner), paths_);
  dialog.setWindowTitle(ToQt(record.prompt));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  StartAt(dialog, {});
  Path chosen = Run(dialog);
  if (chosen.empty()) return std::nullopt;
  const bool is_drive = chosen.size() == 2;
  if (is_drive) chosen += '\\';
  return chosen;
}

QWidget* QtFileDialogs::OwnerOf(Window* owner) const {
  QWidget* native = owner == nullptr ? nullptr : windows_.NativeOf(*owner);
  if (native == nullptr) native = QApplication::activeWindow();
  // A window that can't be seen would hide the dialog with it.
  return native != nullptr && native->isVisible() && !native->isMinimized() ? native : nullptr;
}

void QtFileDialogs::StartAt(PathFileDialog& dialog, const FileDialogRecord& record) {
  const QString folder = FolderOf(record.initial_dir);
  if (!folder.isEmpty()) {
    dialog.setDirectory(folder);
  } else if (!last_folder_.isEmpty() && QFileInfo(last_folder_).isDir()) {
    dialog.setDirectory(last_folder_);
  } else {
    dialog.setDirectory(QDir::home());
  }
  const OfferedFile file = OfferedBy(record);
  const QString its_folder = FolderOf(file.folder);
  if (!its_folder.isEmpty()) dialog.setDirectory(its_folder);
  if (!file.name.empty()) dialog.selectFile(ToQt(file.name));
}

QString QtFileDialogs::FolderOf(const Path& path) const {
  const QString native = path.empty() ? QString() : ToQt(paths_.to_native(path));
  return !native.isEmpty() && QFileInfo(native).isDir() ? native : QString();
}

Path QtFileDialogs::Run(PathFileDialog& dialog) {
  Path chosen = dialog.Choose();
  if (!chosen.empty()) last_folder_ = dialog.directory().absolutePath();
  return chosen;
}

}  // namespace tarnvale
