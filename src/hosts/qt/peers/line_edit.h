// The one-line fields.
#pragma once

#include <QLineEdit>

#include <functional>
#include <string>

namespace tarnvale {

/// A line edit that keeps the selection that the program made when a click gave
/// it the focus, and that hands on dropped files.
class LineEdit : public QLineEdit {
 public:
  explicit LineEdit(QWidget& parent);

  /// Called with the native paths of dropped files. Unset: takes none.
  std::function<void(const QStringList& files)> on_files;

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  bool got_focus_by_click_ = false;
  bool ignores_press_ = false;
};

/// A password field: no other program learns what is typed or kept in it.
class PasswordEdit final : public LineEdit {
 public:
  explicit PasswordEdit(QWidget& parent);

  /// An input method gets none of its text.
  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

 protected:
  bool eventFilter(QObject* target, QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
};

/// A field with a mask: its keys go to a MaskedText.
class MaskedEdit final : public LineEdit {
 public:
  MaskedEdit(QWidget& parent, std::string mask);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  bool Edit(const QKeyEvent& event);
  void Type(const QString& typed);
  template <class Change>
  void Apply(Change change);

  std::string mask_;
};

}  // namespace tarnvale
