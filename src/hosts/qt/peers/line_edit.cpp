#include "hosts/qt/peers/line_edit.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>

#include <memory>

#include "hosts/qt/peers/dropped_files.h"
#include "hosts/qt/peers/mask.h"

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

// Qt tells screen readers of each key that comes from the system, by a filter of
// the whole application. Keys for this field come from here instead.
bool PasswordEdit::eventFilter(QObject* target, QEvent* event) {
  const QEvent::Type type = event->type();
  // Precedes each key: Qt's filter may be newer, and the newest one is asked first.
  if (type == QEvent::ShortcutOverride) qApp->installEventFilter(this);
  const bool is_key = type == QEvent::KeyPress || type == QEvent::KeyRelease;
  if (!is_key || !event->spontaneous() || !hasFocus()) return false;
  const std::unique_ptr<QEvent> key(event->clone());
  QCoreApplication::sendEvent(target, key.get());
  return true;
}

MaskedEdit::MaskedEdit(QWidget& parent, QString mask) : LineEdit(parent), mask_(std::move(mask)) {
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
    EraseSelection();
    return true;
  }
  if (event.matches(QKeySequence::Undo) || event.matches(QKeySequence::Redo)) return true;
  switch (event.key()) {
    case Qt::Key_Backspace:
      EraseBack();
      return true;
    case Qt::Key_Delete:
      EraseSelection();
      return true;
    default:
      break;
  }
  if (event.text().isEmpty() || !event.text()[0].isPrint()) return false;
  Type(event.text());
  return true;
}

void MaskedEdit::Type(const QString& typed) {
  QString whole = mask_.size() == text().size() ? text() : mask::Fit(mask_, text());
  qsizetype from = cursorPosition();
  if (hasSelectedText()) {
    from = selectionStart();
    mask::Clear(mask_, whole, from, selectionEnd());
  }
  const bool is_literal = typed.size() == 1 && !typed[0].isDigit();
  if (is_literal) {
    // The mask's own character steps over itself; any other is refused.
    const qsizetype literal = mask_.indexOf(typed[0], from);
    if (literal >= 0 && typed[0] != QLatin1Char('#')) Put(whole, literal + 1);
    return;
  }
  const qsizetype caret = mask::Type(mask_, whole, from, typed);
  Put(whole, caret);
}

void MaskedEdit::EraseSelection() {
  QString whole = text();
  const qsizetype from = hasSelectedText() ? selectionStart() : cursorPosition();
  const qsizetype to = hasSelectedText() ? selectionEnd() : mask::PlaceFrom(mask_, from) + 1;
  mask::Clear(mask_, whole, from, to);
  Put(whole, from);
}

void MaskedEdit::EraseBack() {
  if (hasSelectedText()) {
    EraseSelection();
    return;
  }
  const qsizetype place = mask::PlaceBefore(mask_, cursorPosition());
  if (place < 0) return;
  QString whole = text();
  mask::Clear(mask_, whole, place, place + 1);
  Put(whole, place);
}

void MaskedEdit::Put(const QString& whole, qsizetype caret) {
  const bool is_new = whole != text();
  setText(whole);
  setCursorPosition(static_cast<int>(caret));
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
