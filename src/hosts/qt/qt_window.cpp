#include "hosts/qt/qt_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QIcon>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScreen>

#include <algorithm>

#include "hosts/qt/peers/accessible.h"
#include "hosts/qt/peers/peer_factory.h"
#include "hosts/qt/peers/picture_box_peer.h"
#include "hosts/qt/qt_look.h"
#include "hosts/qt/qt_menus.h"
#include "hosts/qt/qt_pictures.h"
#include "hosts/qt/qt_text.h"
#include "ui/accessible_names.h"

namespace tarnvale {
namespace {

/// How long a window manager may take to follow a change of state. What it says
/// meanwhile can be an answer to an earlier one.
constexpr int kSettleMs = 400;

Qt::WindowFlags FlagsOf(const Window& window) {
  const Qt::WindowFlags framed = Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                 Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
  const Qt::WindowFlags kind = window.InTaskBar ? Qt::Window : Qt::Tool;
  switch (window.Frame) {
    case WindowFrame::kFixed:
      return kind | framed | Qt::WindowMinimizeButtonHint;
    case WindowFrame::kDialog:
      return kind | framed;
    case WindowFrame::kPlain:
      return kind | Qt::FramelessWindowHint;
    case WindowFrame::kPopup:
      break;
  }
  // A kind that window managers leave alone: it may stand beyond the screen's
  // edge, and sliding in it isn't held back. Wayland would tie it to the window that
  // was clicked last, and show it nowhere.
  const bool is_on_wayland = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
  return (is_on_wayland ? Qt::Tool : Qt::ToolTip) | Qt::FramelessWindowHint |
         Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus;
}

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::Enter:
    case QEvent::HoverEnter:
    case QEvent::DragEnter:
    case QEvent::Drop:
    case QEvent::ContextMenu:
      return true;
    default:
      return false;
  }
}

}  // namespace

QPoint PopupPlace(QPoint screen_origin, int left_twips, int top_twips) {
  return screen_origin + QPoint(left_twips / kTwipsPerPixel, top_twips / kTwipsPerPixel);
}

QtWindow::QtWindow(PeerContext& context, Window& record, Desktop& desktop)
    : context_(context), record_(record), desktop_(desktop) {
  setWindowFlags(FlagsOf(record_));
  if (record_.Frame == WindowFrame::kPopup) setAttribute(Qt::WA_ShowWithoutActivating);
  settle_.setSingleShot(true);
  connect(&settle_, &QTimer::timeout, this, [this] { ReportState(); });
  FollowRecord();
  ApplyEnabled();
  RequestSync();
}

QtWindow::~QtWindow() {
  SilenceControls(*this);
  hide();
  delete client_;
}

void QtWindow::FollowRecord() {
  setWindowTitle(ToShown(record_.Caption.Get()));
  Follow(record_.Caption.Changed, [this] { setWindowTitle(ToShown(record_.Caption.Get())); });
  Follow(record_.Icon.Changed, [this] { ApplyIcon(); });
  Follow(record_.Enabled.Changed, [this] { ApplyEnabled(); });
  for (Signal<>* signal :
       {&record_.Visible.Changed, &record_.State.Changed, &record_.InTaskBar.Changed}) {
    Follow(*signal, [this] { RequestSync(); });
  }
  // A hidden window that moves costs nothing; showing it brings all up to date.
  for (Signal<>* signal :
       {&record_.LeftTwips.Changed, &record_.TopTwips.Changed, &record_.Alpha.Changed}) {
    Follow(*signal, [this] {
      if (record_.Visible) RequestSync();
    });
  }
  Follow(record_.Raised, [this] {
    raise_is_requested_ = true;
    RequestSync();
  });
  Follow(record_.FocusMoved, [this] { ShowFocus(); });
}

void QtWindow::Build() {
  if (client_ != nullptr) return;
  ApplyIcon();
  BuildMenus();
  const int bar = menus_ == nullptr ? 0 : menus_->sizeHint().height();
  const Size size = record_.ClientSize;
  setFixedSize(size.width_px, size.height_px + bar);
  if (menus_ != nullptr) menus_->setGeometry(0, 0, size.width_px, bar);
  client_ = new QWidget(this);
  client_->setGeometry(0, bar, size.width_px, size.height_px);
  BuildControls();
  ShowFocus();
}

void QtWindow::BuildMenus() {
  if (record_.MenuBar.empty()) return;
  menus_ = new QMenuBar(this);
  menus_->setNativeMenuBar(false);
  FillMenuBar(
      *menus_, record_.MenuBar, [this](MenuItem& row) { Report([&] { row.Clicked.Emit(); }); },
      subscriptions_);
}

void QtWindow::BuildControls() {
  QWidget* before = nullptr;
  for (const Placement& placement : record_.Placements()) {
    const auto container = peer_of_.find(placement.container);
    QWidget& parent = container == peer_of_.end() ? *client_ : container->second->Widget();
    std::unique_ptr<Peer> peer = MakePeer(context_, *placement.control, parent);
    const Rect& place = placement.place;
    peer->Widget().setGeometry(place.left_px, place.top_px, place.width_px, place.height_px);
    if (before != nullptr) setTabOrder(before, &peer->FocusWidget());
    before = &peer->FocusWidget();
    peer_of_[placement.control] = peer.get();
    peers_.push_back(std::move(peer));
  }
  NameControls();
}

void QtWindow::NameControls() {
  for (const auto& [control, label] : LabelsOf(record_)) {
    peer_of_.at(control)->SetLabel(label);
    peer_of_.at(control)->UpdateName();
  }
}

Peer* QtWindow::PeerOf(const Control& control) const {
  const auto found = peer_of_.find(&control);
  return found == peer_of_.end() ? nullptr : found->second;
}

void QtWindow::RequestSync() {
  if (sync_is_requested_) return;
  sync_is_requested_ = true;
  QMetaObject::invokeMethod(
      this, [this] { Sync(); }, Qt::QueuedConnection);
}

void QtWindow::Sync() {
  sync_is_requested_ = false;
  if (context_.ending) return;
  // First, as the window may go out of sight in answer.
  EmitResized();
  const bool is_minimized = record_.State.Get() == WindowState::kMinimized;
  // A minimised window that isn't on the task bar is nowhere to be seen.
  const bool is_mapped = record_.Visible && !(is_minimized && !record_.InTaskBar);
  const QScopedValueRollback applying(is_applying_, true);
  if (!is_mapped) {
    raise_is_requested_ = false;
    hide();
    return;
  }
  Build();
  ApplyFlags();
  setWindowOpacity(std::clamp(record_.Alpha.Get(), 0, 255) / 255.0);
  ApplyPosition();
  ApplyState();
  if (raise_is_requested_ && !is_minimized) BringForward();
  raise_is_requested_ = false;
}

void QtWindow::EmitResized() {
  if (record_.State.Get() == emitted_state_) return;
  emitted_state_ = record_.State;
  Report([this] { record_.Resized.Emit(); });
}

void QtWindow::ApplyFlags() {
  const Qt::WindowFlags wanted = FlagsOf(record_);
  if ((windowFlags() & Qt::WindowType_Mask) == (wanted & Qt::WindowType_Mask)) return;
  // Takes the window off the screen; ApplyState brings it back.
  setWindowFlags(wanted);
}

void QtWindow::ApplyState() {
  // Only what is new in the record: a window that the user brought up in
  // the meantime, and whose report is still settling, stays up.
  if (ordered_state_ != record_.State.Get()) {
    ordered_state_ = record_.State.Get();
    was_restored_again_ = false;
    const bool wants_minimized = ordered_state_ == WindowState::kMinimized;
    if (wants_minimized != isMinimized()) {
      since_state_was_applied_.start();
      const Qt::WindowStates others = windowState() & ~Qt::WindowMinimized;
      setWindowState(wants_minimized ? others | Qt::WindowMinimized : others);
    }
  }
  if (!isVisible()) show();
}

void QtWindow::ApplyPosition() {
  if (record_.Frame == WindowFrame::kPopup) {
    const QPoint origin = QGuiApplication::primaryScreen()->geometry().topLeft();
    move(PopupPlace(origin, record_.LeftTwips, record_.TopTwips));
  } else {
    PlaceFirst();
  }
}

void QtWindow::PlaceFirst() {
  if (was_placed_) return;
  was_placed_ = true;
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  const int left = screen.left() + (screen.width() - width()) / 2;
  const int top = screen.top() + (screen.height() - height()) * 2 / 5;
  move(std::max(left, screen.left()), std::max(top, screen.top()));
}

void QtWindow::BringForward() {
  raise();
  if (record_.Frame != WindowFrame::kPopup) activateWindow();
}

void QtWindow::ApplyIcon() {
  const QIcon icon = PictureNamed(record_.Icon);
  setWindowIcon(icon);
  // Boxes and dialogs have none of their own.
  if (QApplication::windowIcon().isNull()) QApplication::setWindowIcon(icon);
}

void QtWindow::ApplyEnabled() {
  // The window takes no input, and looks as ever.
  if (record_.Enabled) {
    qApp->removeEventFilter(this);
  } else {
    qApp->installEventFilter(this);
  }
}

bool QtWindow::eventFilter(QObject* watched, QEvent* event) {
  if (context_.ending || record_.Enabled || !IsInput(event->type())) return false;
  const auto* widget = qobject_cast<const QWidget*>(watched);
  return widget != nullptr && widget->window() == this;
}

void QtWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (context_.ending || !record_.Enabled) return;
  Report([this] { record_.Close(); });
}

void QtWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (context_.ending) return;
  if (event->type() == QEvent::WindowStateChange) ReportState();
  if (event->type() == QEvent::ActivationChange) ReportActivation();
}

void QtWindow::ReportState() {
  const auto state = isMinimized() ? WindowState::kMinimized : WindowState::kNormal;
  if (is_applying_ || !isVisible() || record_.State.Get() == state) return;
  const bool is_settling =
      since_state_was_applied_.isValid() && since_state_was_applied_.elapsed() < kSettleMs;
  if (is_settling) {
    if (state == WindowState::kMinimized) RestoreAgain();
    settle_.start(kSettleMs);
    return;
  }
  ordered_state_ = state;
  Report([&] { record_.State = state; });
  EmitResized();
}

void QtWindow::RestoreAgain() {
  if (was_restored_again_) return;
  was_restored_again_ = true;
  const auto restore = [this] {
    if (record_.State.Get() == WindowState::kNormal && isMinimized()) {
      setWindowState(windowState() & ~Qt::WindowMinimized);
    }
  };
  QMetaObject::invokeMethod(this, restore, Qt::QueuedConnection);
}

void QtWindow::ReportActivation() {
  if (!isActiveWindow()) return;
  Report([this] {
    if (record_.Focused() == nullptr) record_.FocusNext();
  });
  if (desktop_.ActiveWindow.Get() == &record_) return;
  Report([this] { desktop_.ActiveWindow = &record_; });
  Report([this] { record_.Activated.Emit(); });
}

bool QtWindow::focusNextPrevChild(bool next) {
  Report([&] { record_.FocusNext(next); });
  return true;
}

void QtWindow::ShowFocus() {
  if (record_.Focused() == nullptr) return;
  Peer* peer = PeerOf(*record_.Focused());
  if (peer != nullptr && !peer->FocusWidget().hasFocus()) peer->FocusWidget().setFocus();
}

void QtWindow::paintEvent(QPaintEvent*) {
  if (record_.Frame != WindowFrame::kPlain && record_.Frame != WindowFrame::kPopup) return;
  QPainter painter(this);
  painter.setPen(QColor(palette::kPanelEdge));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void QtWindow::Report(const std::function<void()>& handler) {
  if (!context_.ending) context_.loop.Deliver(handler);
}

}  // namespace tarnvale
