#include "hosts/qt/peers/line_edit.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>

#include <memory>

#include "hosts/qt/peers/dropped_files.h"
#include "hosts/qt/qt_text.h"
#include "ui/masked_text.h"

namespace tarnvale {

LineEdit::LineEdit(QWidget& parent) : QLineEdit(&parent) {}

void LineEdit::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  got_focus_by_click_ = event->reason() == Qt::MouseFocusReason;
}

void LineEdit::mousePressEvent(QMouseEvent* event) {
  // The handler of the focus ran before this; what it selected stays.
  ignores_press_ = got_focus_by_click_ && hasSelectedText();
  got_focus_by_click_ = false;
  if (!ignores_press_) QLineEdit::mousePressEvent(event);
}

void LineEdit::mouseMoveEvent(QMouseEvent* event) {
  if (!ignores_press_) QLineEdit::mouseMoveEvent(event);
}

void LineEdit::mouseReleaseEvent(QMouseEvent* event) {
  if (!ignores_press_) QLineEdit::mouseReleaseEvent(event);
  ignores_press_ = false;
}

void LineEdit::dragEnterEvent(QDragEnterEvent* event) {
  if (!AnswerFileDrag(*event, static_cast<bool>(on_files))) QLineEdit::dragEnterEvent(event);
}

void LineEdit::dragMoveEvent(QDragMoveEvent* event) {
  if (!AnswerFileDrag(*event, static_cast<bool>(on_files))) QLineEdit::dragMoveEvent(event);
}

void LineEdit::dropEvent(QDropEvent* event) {
  if (!AnswerFileDrag(*event, static_cast<bool>(on_files))) {
    QLineEdit::dropEvent(event);
  } else if (on_files) {
    on_files(FilesOf(*event));
  }
}

PasswordEdit::PasswordEdit(QWidget& parent) : LineEdit(parent) {
  setEchoMode(QLineEdit::Password);
}

QVariant PasswordEdit::inputMethodQuery(Qt::InputMethodQuery query) const {
  switch (query) {
    case Qt::ImSurroundingText:
    case Qt::ImCurrentSelection:
    case Qt::ImTextBeforeCursor:
    case Qt::ImTextAfterCursor:
      return {};
    default:
      return LineEdit::inputMethodQuery(query);
  }
}

void PasswordEdit::focusInEvent(QFocusEvent* event) {
  LineEdit::focusInEvent(event);
  qApp->installEventFilter(this);
}

void PasswordEdit::focusOutEvent(QFocusEvent* event) {
  LineEdit::focusOutEvent(event);
  qApp->removeEventFilter(this);
}

// Qt reports to screen readers each key that comes from the system, by a filter of
// the whole application. Keys for this field come from here instead.
bool PasswordEdit::eventFilter(QObject* target, QEvent* event) {
  const QEvent::Type type = event->type();
  // Precedes each key: Qt's filter may be newer, and the newest one runs first.
  if (type == QEvent::ShortcutOverride) qApp->installEventFilter(this);
  const bool is_key = type == QEvent::KeyPress || type == QEvent::KeyRelease;
  if (!is_key || !event->spontaneous() || !hasFocus()) return false;
  const std::unique_ptr<QEvent> key(event->clone());
  QCoreApplication::sendEvent(target, key.get());
  return true;
}

MaskedEdit::MaskedEdit(QWidget& parent, std::string mask)
    : LineEdit(parent), mask_(std::move(mask)) {
  setContextMenuPolicy(Qt::NoContextMenu);
  setInputMethodHints(Qt::ImhDigitsOnly);
}

void MaskedEdit::keyPressEvent(QKeyEvent* event) {
  if (isReadOnly() || !Edit(*event)) QLineEdit::keyPressEvent(event);
}

bool MaskedEdit::Edit(const QKeyEvent& event) {
  if (event.matches(QKeySequence::Paste)) {
    Type(QApplication::clipboard()->text());
    return true;
  }
  if (event.matches(QKeySequence::Cut)) {
    copy();
    Apply([](MaskedText& field) { field.Erase(); });
    return true;
  }
  if (event.matches(QKeySequence::Undo) || event.matches(QKeySequence::Redo)) return true;
  switch (event.key()) {
    case Qt::Key_Backspace:
      Apply([](MaskedText& field) { field.EraseBack(); });
      return true;
    case Qt::Key_Delete:
      Apply([](MaskedText& field) { field.Erase(); });
      return true;
    default:
      break;
  }
  if (event.text().isEmpty() || !event.text()[0].isPrint()) return false;
  Type(event.text());
  return true;
}

void MaskedEdit::Type(const QString& typed) {
  Apply([&](MaskedText& field) { field.Type(FromQt(typed)); });
}

template <class Change>
void MaskedEdit::Apply(Change change) {
  const int from = hasSelectedText() ? selectionStart() : cursorPosition();
  const MaskedText before{.mask = mask_,
                          .text = FromQt(text()),
                          .caret = BytesOf(text(), from),
                          .selected = FromQt(selectedText()).size()};
  MaskedText field = before;
  change(field);
  if (field == before) return;
  const QString whole = ToQt(field.text);
  const bool is_new = whole != text();
  setText(whole);
  setCursorPosition(static_cast<int>(UnitsOf(field.text, field.caret)));
  if (is_new) emit textEdited(whole);
}

void MaskedEdit::inputMethodEvent(QInputMethodEvent* event) {
  if (!isReadOnly() && !event->commitString().isEmpty()) Type(event->commitString());
  event->accept();
}

void MaskedEdit::mouseReleaseEvent(QMouseEvent* event) {
  // The middle button would paste past the mask.
  if (event->button() != Qt::MiddleButton) LineEdit::mouseReleaseEvent(event);
}

void MaskedEdit::dropEvent(QDropEvent* event) {
  if (event->mimeData()->hasUrls()) {
    LineEdit::dropEvent(event);
  } else if (!isReadOnly()) {
    Type(event->mimeData()->text());
  }
}

}  // namespace tarnvale
