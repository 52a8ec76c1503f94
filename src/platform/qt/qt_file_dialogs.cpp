#include "platform/qt/qt_file_dialogs.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>

#include <algorithm>

#include "base/text.h"
#include "platform/qt/qt_text.h"

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
  return text.size() < buffer.size();
}

void Fill(std::string& buffer, const std::string& text) {
  std::fill(buffer.begin(), buffer.end(), '\0');
  std::copy(text.begin(), text.end(), buffer.begin());
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
bool AgreesToMissing(QWidget* owner, const QString& native, std::uint32_t flags) {
  if (QFileInfo::exists(native) || (flags & kCreatePrompt) == 0) return true;
  const auto text =
      QFileInfo(native).fileName() + "\n" + QFileDialog::tr("This file doesn't exist. Create it?");
  return QMessageBox::question(owner, QFileDialog::tr("Open"), text) == QMessageBox::Yes;
}

void Prepare(QFileDialog& dialog, const FileDialogRecord& record) {
  if (!record.title.empty()) dialog.setWindowTitle(ToQt(record.title));
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
  QFileDialog dialog(owner);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  const bool must_exist = (record.flags & kFileMustExist) != 0;
  const bool may_create = (record.flags & kCreatePrompt) != 0;
  dialog.setFileMode(must_exist || !may_create ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
  Prepare(dialog, record);
  StartAt(dialog, record);
  const Path chosen = Run(dialog);
  if (chosen.empty()) return false;
  if (!AgreesToMissing(owner, dialog.selectedFiles().value(0), record.flags)) return false;
  return GiveBack(record, chosen);
}

bool QtFileDialogs::ShowSave(FileDialogRecord& record) {
  QFileDialog dialog(OwnerOf(record.owner));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  QString extension = ToQt(record.default_ext);
  if (extension.startsWith('.')) extension.remove(0, 1);
  dialog.setDefaultSuffix(extension);
  Prepare(dialog, record);
  StartAt(dialog, record);
  return GiveBack(record, Run(dialog));
}

std::optional<Path> QtFileDialogs::BrowseForFolder(const FolderDialogRecord& record) {
  QFileDialog dialog(OwnerOf(record.owner), ToQt(record.prompt));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  StartAt(dialog, {});
  const Path chosen = Run(dialog);
  if (chosen.empty()) return std::nullopt;
  return chosen;
}

QWidget* QtFileDialogs::OwnerOf(Window* owner) const {
  QWidget* native = owner == nullptr ? nullptr : windows_.NativeOf(*owner);
  if (native == nullptr) native = QApplication::activeWindow();
  // A window that can't be seen would hide the dialog with it.
  return native != nullptr && native->isVisible() && !native->isMinimized() ? native : nullptr;
}

void QtFileDialogs::StartAt(QFileDialog& dialog, const FileDialogRecord& record) {
  const std::string folder = record.initial_dir.empty() ? "" : paths_.to_native(record.initial_dir);
  if (!folder.empty()) {
    dialog.setDirectory(ToQt(folder));
  } else if (!last_folder_.isEmpty() && QFileInfo(last_folder_).isDir()) {
    dialog.setDirectory(last_folder_);
  } else {
    dialog.setDirectory(QDir::home());
  }
  const Path file = TextOf(record.file);
  if (file.empty() || file.find_first_of("*?") != std::string::npos) return;
  const std::size_t slash = file.rfind('\\');
  if (slash != std::string::npos) {
    const std::string parent = paths_.to_native(file.substr(0, slash + 1));
    if (!parent.empty()) dialog.setDirectory(ToQt(parent));
  }
  dialog.selectFile(ToQt(FileNameOf(file)));
}

Path QtFileDialogs::Run(QFileDialog& dialog) {
  QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
  const bool confirmed = dialog.exec() == QDialog::Accepted;
  QGuiApplication::restoreOverrideCursor();
  const QStringList chosen = dialog.selectedFiles();
  if (!confirmed || chosen.isEmpty()) return {};
  last_folder_ = dialog.directory().absolutePath();
  return paths_.to_program(FromQt(QDir::cleanPath(chosen.front())));
}

}  // namespace tarnvale
