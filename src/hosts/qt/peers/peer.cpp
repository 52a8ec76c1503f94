#include "hosts/qt/peers/peer.h"

#include <QFocusEvent>

#include "hosts/qt/qt_pixels.h"
#include "hosts/qt/qt_text.h"
#include "ui/accessible_names.h"
#include "ui/input_rules.h"
#include "ui/owner_drawn.h"
#include "ui/window.h"

namespace tarnvale {
namespace {

Key ToKey(int key) {
  switch (key) {
    case Qt::Key_Space:
      return Key::kSpace;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return Key::kEnter;
    case Qt::Key_Escape:
      return Key::kEscape;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return Key::kTab;
    case Qt::Key_Delete:
      return Key::kDelete;
    case Qt::Key_Left:
      return Key::kLeft;
    case Qt::Key_Right:
      return Key::kRight;
    case Qt::Key_Up:
      return Key::kUp;
    case Qt::Key_Down:
      return Key::kDown;
    default:
      return Key::kOther;
  }
}

// Of Tab and Delete, which have one in Qt, none is typed.
char32_t ToCharacter(const QKeyEvent& event) {
  const QList<uint> typed = event.text().toUcs4();
  const bool types = !typed.isEmpty() && typed.front() != '\t' && event.key() != Qt::Key_Delete;
  return types ? static_cast<char32_t>(typed.front()) : U'\0';
}

}  // namespace

KeyPress ToKeyPress(const QKeyEvent& event) {
  const Qt::KeyboardModifiers held = event.modifiers();
  return {.key = ToKey(event.key()),
          .character = ToCharacter(event),
          .shift = held.testFlag(Qt::ShiftModifier),
          .control = held.testFlag(Qt::ControlModifier),
          .alt = held.testFlag(Qt::AltModifier)};
}

MouseButton ToMouseButton(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton:
      return MouseButton::kLeft;
    case Qt::RightButton:
      return MouseButton::kRight;
    case Qt::MiddleButton:
      return MouseButton::kMiddle;
    default:
      return MouseButton::kNone;
  }
}

MouseButton HeldButton(Qt::MouseButtons buttons) {
  for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
    if (buttons.testFlag(button)) return ToMouseButton(button);
  }
  return MouseButton::kNone;
}

Peer::Peer(PeerContext& context, Control& record) : context_(context), record_(record) {}

Peer::~Peer() {
  context_.frames.Forget(*this);
}

void Peer::Adopt(QWidget* widget) {
  widget_ = widget;
  widget_->setAttribute(Qt::WA_NoMousePropagation);
  widget_->setVisible(record_.Visible);
  widget_->setEnabled(record_.Enabled);
  widget_->setToolTip(ToShown(record_.ToolTip.Get()));
  UpdatePointer();
  UpdateName();
  FocusWidget().installEventFilter(this);
  Follow(record_.Visible.Changed, [this] { widget_->setVisible(record_.Visible); });
  Follow(record_.Enabled.Changed, [this] { widget_->setEnabled(record_.Enabled); });
  Follow(record_.Pointer.Changed, [this] { UpdatePointer(); });
  Follow(record_.PointerPicture.Changed, [this] { UpdatePointer(); });
  Follow(record_.AccessibleName.Changed, [this] { UpdateName(); });
  Follow(record_.ToolTip.Changed, [this] {
    widget_->setToolTip(ToShown(record_.ToolTip.Get()));
    UpdateName();
  });
}

void Peer::UpdateName() {
  const QString name = ToShown(NameForReaders(record_, label_));
  if (FocusWidget().accessibleName() != name) FocusWidget().setAccessibleName(name);
}

void Peer::UpdatePointer() {
  const Raster& picture = record_.PointerPicture;
  switch (record_.Pointer.Get()) {
    case PointerShape::kDefault:
      widget_->unsetCursor();
      break;
    case PointerShape::kHourglass:
      widget_->setCursor(Qt::WaitCursor);
      break;
    case PointerShape::kHand:
      widget_->setCursor(Qt::PointingHandCursor);
      break;
    case PointerShape::kPicture:
      widget_->setCursor(QCursor(
          QPixmap::fromImage(ViewOf(picture.pixels.data(), picture.width, picture.height))));
      break;
  }
}

void Peer::Report(const std::function<void()>& handler) {
  if (!context_.ending) context_.loop.Deliver(handler);
}

bool Peer::eventFilter(QObject* watched, QEvent* event) {
  if (context_.ending || watched != &FocusWidget()) return false;
  switch (event->type()) {
    case QEvent::FocusIn:
      ReportFocus(static_cast<QFocusEvent&>(*event), true);
      return false;
    case QEvent::FocusOut:
      ReportFocus(static_cast<QFocusEvent&>(*event), false);
      return false;
    case QEvent::KeyPress:
      return ReportKey(static_cast<QKeyEvent&>(*event));
    case QEvent::MouseButtonPress:
      return IsPressRefused();
    default:
      return false;
  }
}

bool Peer::IsPressRefused() {
  if (MayTakePress(record_)) return false;
  // The press may overtake the activation of its window: then the focus waits
  // here, unless its last owner has called it back already.
  const bool focus_waits =
      !widget_->isActiveWindow() && widget_->window()->focusWidget() == &FocusWidget();
  if (focus_waits) Report([this] { record_.Owner()->Focus(record_); });
  return !MayTakePress(record_);
}

void Peer::ReportFocus(QFocusEvent& event, bool has_focus) {
  // A menu borrows the focus; the control keeps it as far as anybody can see.
  if (event.reason() == Qt::PopupFocusReason) return;
  if (has_focus) Report([this] { record_.Owner()->Focus(record_); });
  OnFocus(has_focus);
}

bool Peer::ReportKey(QKeyEvent& event) {
  KeyEvent key{.press = ToKeyPress(event)};
  Report([&] { record_.Owner()->KeyDown.Emit(key); });
  if (!key.handled && key.press.key == Key::kEnter) {
    if (OwnerDrawn* button = PressedByEnter(record_)) {
      key.handled = true;
      Report([button] { button->Press(); });
    }
  }
  if (key.handled) event.accept();
  return key.handled;
}

}  // namespace tarnvale
