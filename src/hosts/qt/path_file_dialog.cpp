#include "hosts/qt/path_file_dialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTreeView>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "base/text.h"
#include "hosts/qt/qt_text.h"

namespace tarnvale {
namespace {

bool IsProgramPath(const QString& text) {
  static const QRegularExpression beginning(R"(^(\\|[A-Za-z]:.*[\\/]))");
  return beginning.match(text).hasMatch();
}

// Qt makes the columns of size and time too narrow for what it writes into them. That
// of the kind stays as it is: some kinds have names that would leave no room.
void ShowSizeAndTimeWhole(QHeaderView& header) {
  header.setSectionResizeMode(0, QHeaderView::Stretch);
  header.setSectionResizeMode(1, QHeaderView::ResizeToContents);
  header.setSectionResizeMode(3, QHeaderView::ResizeToContents);
}

}  // namespace

PathFileDialog::PathFileDialog(QWidget* owner, PathTranslation paths)
    : QFileDialog(owner), paths_(std::move(paths)) {
  // Confirmed here: Qt and the desktop know a file by its very name only.
  setOption(QFileDialog::DontConfirmOverwrite);
  if (const auto* files = findChild<QTreeView*>("treeView")) ShowSizeAndTimeWhole(*files->header());
  if (const QLineEdit* field = NameField()) {
    connect(field, &QLineEdit::textChanged, this,
            [this](const QString& typed) { EnableOpenFor(typed); });
  }
}

// Not by Qt in the open dialog: there it adds it to files that are there as well.
void PathFileDialog::SetDefaultExtension(const QString& extension) {
  if (acceptMode() == QFileDialog::AcceptSave) {
    setDefaultSuffix(extension);
  } else {
    extension_to_open_ = extension;
  }
}

Path PathFileDialog::Choose() {
  QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
  const bool confirmed = exec() == QDialog::Accepted;
  Path path = confirmed ? Result() : Path();
  QGuiApplication::restoreOverrideCursor();
  return path;
}

void PathFileDialog::accept() {
  QLineEdit* field = NameField();
  missing_ = field == nullptr ? Path() : MissingPath(field->text());
  if (!missing_.empty()) {
    done(QDialog::Accepted);
  } else if (field == nullptr || MayAccept(*field)) {
    QFileDialog::accept();
  }
}

// None in a dialog of the desktop.
QLineEdit* PathFileDialog::NameField() const {
  return findChild<QLineEdit*>("fileNameEdit");
}

// The path that was typed when its folder isn't there and needn't be; else empty.
Path PathFileDialog::MissingPath(const QString& typed) const {
  if (fileMode() != QFileDialog::AnyFile || !IsProgramPath(typed)) return {};
  Path path = FromQt(typed);
  std::replace(path.begin(), path.end(), '/', '\\');
  const std::string name = FileNameOf(path);
  const Path folder = tarnvale::FolderOf(path);
  const bool is_name = !name.empty() && name.find_first_of("*?") == std::string::npos;
  if (!is_name || QFileInfo(ToQt(paths_.to_native(folder))).isDir()) return {};
  const QString extension =
      acceptMode() == QFileDialog::AcceptSave ? defaultSuffix() : extension_to_open_;
  const bool lacks_extension = name.find('.') == std::string::npos && !extension.isEmpty();
  return lacks_extension ? path + '.' + FromQt(extension) : path;
}

// Before Qt looks at the choice: it refuses missing files.
bool PathFileDialog::MayAccept(QLineEdit& field) {
  if (IsProgramPath(field.text())) {
    const QString native = Translated(field.text());
    if (native.isEmpty()) return false;
    field.setText(native);
  }
  const QString chosen = selectedFiles().value(0);
  const QString file = WithExtension(chosen);
  if (file != chosen) field.setText(file);
  const bool is_entered = fileMode() != QFileDialog::Directory && QFileInfo(file).isDir();
  if (file.isEmpty() || is_entered) return true;
  const Path path = paths_.to_program(FromQt(file));
  if (!path.empty()) return MayReplace(file, path);
  ShowUnusable(file);
  return false;
}

QString PathFileDialog::WithExtension(const QString& native) const {
  const QFileInfo info(native);
  const bool may_lack = !native.isEmpty() && !info.fileName().contains('.') && !info.exists();
  return may_lack && !extension_to_open_.isEmpty() ? native + '.' + extension_to_open_ : native;
}

// Qt enables the button for what it would find by itself.
void PathFileDialog::EnableOpenFor(const QString& typed) {
  const QString file = WithExtension(directory().filePath(typed));
  if (!IsProgramPath(typed) && !QFileInfo(file).isFile()) return;
  const auto* buttons = findChild<QDialogButtonBox*>();
  QPushButton* open = buttons == nullptr ? nullptr : buttons->button(QDialogButtonBox::Open);
  if (open != nullptr) open->setEnabled(true);
}

Path PathFileDialog::Result() {
  if (!missing_.empty()) return missing_;
  const QString chosen = QDir::cleanPath(selectedFiles().value(0));
  if (chosen.isEmpty()) return {};
  // A dialog of the desktop takes a typed path of the program for one name.
  const QString name = QFileInfo(chosen).fileName();
  if (Path missing = MissingPath(name); !missing.empty()) return missing;
  const QString native = WithExtension(IsProgramPath(name) ? Translated(name) : chosen);
  if (native.isEmpty()) return {};
  const Path path = paths_.to_program(FromQt(native));
  if (path.empty()) {
    ShowUnusable(native);
    return {};
  }
  const bool was_asked = NameField() != nullptr;
  return was_asked || MayReplace(native, path) ? path : Path();
}

// The native path of a path of the program, there or not; empty, after a word
// about it, when there isn't even its folder.
QString PathFileDialog::Translated(const QString& typed) {
  const Path path = FromQt(typed);
  std::string native = paths_.to_native(path);
  if (native.empty()) {
    const std::size_t name = path.find_last_of("\\/") + 1;
    const std::string folder = paths_.to_native(path.substr(0, name));
    if (!QFileInfo(ToQt(folder)).isDir()) {
      ShowMessage(typed + "\nThere is no such folder.");
      return {};
    }
    native = folder + "/" + path.substr(name);
  }
  return QDir::cleanPath(ToQt(native));
}

void PathFileDialog::ShowUnusable(const QString& native) {
  ShowMessage(
      native +
      "\nThis name can't be used: no name of a file or folder may have a backslash or a star "
      "in it.\nA whole path begins with its drive or a backslash, like C:\\Folder\\File.");
}

void PathFileDialog::ShowMessage(const QString& text) {
  QMessageBox::warning(Asker(), windowTitle(), text);
}

// `path` may find a file by a name that differs in case.
bool PathFileDialog::MayReplace(const QString& native, const Path& path) {
  if (acceptMode() != QFileDialog::AcceptSave || paths_.to_native(path).empty()) return true;
  const QString text =
      tr("%1 already exists.\nDo you want to replace it?").arg(QFileInfo(native).fileName());
  return QMessageBox::warning(Asker(), windowTitle(), text, QMessageBox::Yes | QMessageBox::No,
                              QMessageBox::No) == QMessageBox::Yes;
}

QWidget* PathFileDialog::Asker() {
  return isVisible() ? this : parentWidget();
}

}  // namespace tarnvale
