// The file dialog that knows the program's path language.
#pragma once

#include <QFileDialog>
#include <QString>

#include "hosts/qt/path_translation.h"

class QLineEdit;

namespace tarnvale {

/// A file dialog in which a path of the program's language can be typed too: one
/// that begins with a drive or a backslash. A name that no path can hold is
/// refused with a word. Qt's own dialog then stays for another choice; one of the
/// desktop has gone by then, and the refusal counts as a cancel.
///
/// In the file mode AnyFile nothing of what is typed has to be there. A save dialog
/// asks before it gives a file that is.
class PathFileDialog final : public QFileDialog {
 public:
  PathFileDialog(QWidget* owner, PathTranslation paths);

  /// Added to a name that has none, unless there is a file of that very name to
  /// open. To be called when the accept mode is set.
  void SetDefaultExtension(const QString& extension);

  /// Modal; the chosen path, empty on a cancel.
  Path Choose();

 protected:
  void accept() override;

 private:
  QLineEdit* NameField() const;
  bool MayAccept(QLineEdit& field);
  Path MissingPath(const QString& typed) const;
  QString WithExtension(const QString& native) const;
  void EnableOpenFor(const QString& typed);
  Path Result();
  QString Translated(const QString& typed);
  void ShowUnusable(const QString& native);
  void ShowMessage(const QString& text);
  bool MayReplace(const QString& native, const Path& path);
  QWidget* Asker();

  PathTranslation paths_;
  QString extension_to_open_;
  /// A path without its folder, which was typed and accepted as it is.
  Path missing_;
};

}  // namespace tarnvale
