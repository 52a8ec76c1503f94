#include "hosts/qt/qt_file_dialogs.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>

#include <algorithm>
#include <cstddef>

#include "base/characters.h"
#include "base/text.h"
#include "hosts/qt/path_file_dialog.h"
#include "hosts/qt/qt_text.h"

namespace tarnvale {
namespace {

// "Archives (*.tvz)" and "*.tvz" become one name filter of Qt; its part in
// round brackets is the pattern.
QString NameFilter(const QString& description, const QString& patterns) {
  QString text = description;
  const qsizetype bracket = text.lastIndexOf('(');
  if (bracket > 0 && text.endsWith(')')) text.truncate(bracket);
  QStringList globs;
  for (const QString& glob : patterns.split(';', Qt::SkipEmptyParts)) {
    globs << (glob.trimmed() == "*.*" ? QString("*") : glob.trimmed());
  }
  return text.trimmed() + " (" + (globs.isEmpty() ? QString("*") : globs.join(' ')) + ")";
}

QStringList NameFilters(const std::string& filter) {
  QStringList fields = ToQt(filter).split(QChar(u'\0'));
  while (!fields.isEmpty() && fields.back().isEmpty()) fields.pop_back();
  QStringList filters;
  for (qsizetype i = 0; i < fields.size(); i += 2) {
    filters << NameFilter(fields[i], i + 1 < fields.size() ? fields[i + 1] : QString());
  }
  return filters;
}

bool Fits(const std::string& text, const std::string& buffer) {
  return CountCharacters(text) < CountCharacters(buffer);
}

void Fill(std::string& buffer, const std::string& text) {
  buffer = PaddedWithNuls(text, CountCharacters(buffer));
}

std::string TextOf(const std::string& buffer) {
  return buffer.substr(0, buffer.find('\0'));
}

bool GiveBack(FileDialogRecord& record, const Path& chosen) {
  const std::string name = FileNameOf(chosen);
  if (chosen.empty() || !Fits(chosen, record.file) || !Fits(name, record.file_title)) return false;
  Fill(record.file, chosen);
  Fill(record.file_title, name);
  return true;
}

// Asks whether a missing file is to be created, as the classic flag wants it.
bool AgreesToMissing(QWidget* owner, const Path& missing, std::uint32_t flags) {
  if ((flags & kCreatePrompt) == 0) return true;
  const auto text =
      ToQt(FileNameOf(missing)) + "\n" + QFileDialog::tr("This file doesn't exist. Create it?");
  return QMessageBox::question(owner, QFileDialog::tr("Open"), text) == QMessageBox::Yes;
}

void Prepare(PathFileDialog& dialog, const FileDialogRecord& record) {
  if (!record.title.empty()) dialog.setWindowTitle(ToQt(record.title));
  QString extension = ToQt(record.default_ext);
  if (extension.startsWith('.')) extension.remove(0, 1);
  dialog.SetDefaultExtension(extension);
  const QStringList filters = NameFilters(record.filter);
  if (!filters.isEmpty()) {
    dialog.setNameFilters(filters);
    const qsizetype index = std::clamp<qsizetype>(record.filter_index - 1, 0, filters.size() - 1);
    dialog.selectNameFilter(filters[index]);
  }
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
  if (paths_.to_native(chosen).empty() && !AgreesToMissing(owner, chosen, record.flags)) {
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
  OfferFile(dialog, TextOf(record.file));
}

// The file may have a name on another machine, with slashes and without a drive.
void QtFileDialogs::OfferFile(PathFileDialog& dialog, const Path& file) {
  if (file.find_first_of("*?") != std::string::npos) return;
  const std::size_t slash = file.find_last_of("\\/");
  const std::size_t name = slash == std::string::npos ? 0 : slash + 1;
  const QString folder = FolderOf(file.substr(0, name));
  if (!folder.isEmpty()) dialog.setDirectory(folder);
  dialog.selectFile(ToQt(file.substr(name)));
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
