#include "hosts/qt/peers/owner_drawn_peer.h"

#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QShortcutEvent>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

#include "hosts/qt/peers/accessible.h"
#include "hosts/qt/peers/dropped_files.h"
#include "hosts/qt/qt_pixels.h"
#include "hosts/qt/qt_text.h"
#include "ui/input_rules.h"
#include "ui/press.h"
#include "ui/window.h"

namespace tarnvale {
namespace {

Point ToPoint(const QMouseEvent& event) {
  const QPoint at = event.position().toPoint();
  return {at.x(), at.y()};
}

QAccessible::Role ToRole(OwnerDrawn::Kind kind) {
  switch (kind) {
    case OwnerDrawn::Kind::kButton:
      return QAccessible::Button;
    case OwnerDrawn::Kind::kCheckBox:
      return QAccessible::CheckBox;
    case OwnerDrawn::Kind::kProgressBar:
      return QAccessible::ProgressBar;
    case OwnerDrawn::Kind::kGroup:
      return QAccessible::Grouping;
    case OwnerDrawn::Kind::kOther:
      break;
  }
  return QAccessible::Client;
}

Color ToColor(const QColor& color) {
  return MakeColor(color.red(), color.green(), color.blue());
}

int EffectOf(Qt::DropActions actions) {
  return (actions.testFlag(Qt::CopyAction) ? kCopies : 0) |
         (actions.testFlag(Qt::MoveAction) ? kMoves : 0);
}

DragStep ToStep(const QDropEvent& event, const PeerContext& context) {
  const QPoint at = event.position().toPoint();
  return {.data = DraggedText(FromQt(event.mimeData()->text()),
                              ProgramPathsOf(FilesOf(event), context)),
          .effect = EffectOf(event.proposedAction()),
          .button = HeldButton(event.buttons()),
          .at = {at.x(), at.y()}};
}

// Pictures are drawn at whole scales.
int ScaleOf(qreal pixel_ratio) {
  return std::max(1, static_cast<int>(std::ceil(pixel_ratio)));
}

}  // namespace

class DrawnWidget final : public QWidget, public AccessibleSource {
 public:
  DrawnWidget(OwnerDrawnPeer& peer, QWidget& parent) : QWidget(&parent), peer_(peer) {
    setMouseTracking(true);
    if (Drawn().TakesFocus()) setFocusPolicy(Qt::StrongFocus);
  }

  QAccessible::Role AccessibleRole() const override { return ToRole(Drawn().AccessibleKind()); }
  AccessibleState StateForReaders() const override { return Drawn().StateForReaders(); }
  bool CanBePressed() const override { return Drawn().CanBePressed(); }
  void PressAccessibly() override {
    peer_.Forward([this] { Drawn().Press(); });
  }

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override { peer_.Resize(size()); }
  bool event(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent*) override {
    peer_.Forward([this] { Drawn().OnMouseLeave(); });
  }
  void dragEnterEvent(QDragEnterEvent* event) override {
    AnswerDrag(*event, &OwnerDrawn::OnDragOver);
  }
  void dragMoveEvent(QDragMoveEvent* event) override {
    AnswerDrag(*event, &OwnerDrawn::OnDragOver);
  }
  void dropEvent(QDropEvent* event) override { AnswerDrag(*event, &OwnerDrawn::OnDragDrop); }
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;

 private:
  OwnerDrawn& Drawn() const { return peer_.Drawn(); }
  void AnswerDrag(QDropEvent& event, void (OwnerDrawn::*handler)(DragStep&));

  OwnerDrawnPeer& peer_;
  Press press_;
};

void DrawnWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QImage& picture = peer_.Picture(devicePixelRatioF());
  // Only a display between two whole scales needs the picture smoothed.
  const bool is_whole = picture.devicePixelRatio() == devicePixelRatioF();
  painter.setRenderHint(QPainter::SmoothPixmapTransform, !is_whole);
  painter.drawImage(0, 0, picture);
}

bool DrawnWidget::event(QEvent* event) {
  const QEvent::Type type = event->type();
  // The native window is there when the control is shown.
  if (type == QEvent::Show || type == QEvent::PaletteChange) peer_.Lend();
  if (type != QEvent::Shortcut) return QWidget::event(event);
  // Several controls with one key take turns in getting the focus.
  if (static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
    setFocus(Qt::ShortcutFocusReason);
  } else {
    peer_.Forward([this] { Drawn().OnAccessKey(); });
  }
  return true;
}

void DrawnWidget::mousePressEvent(QMouseEvent* event) {
  press_.Down(ToMouseButton(event->button()));
  peer_.Forward([&] { Drawn().OnMouseDown(ToMouseButton(event->button()), ToPoint(*event)); });
}

void DrawnWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  press_.Forget();
  peer_.Forward([&] { Drawn().OnDoubleClick(ToMouseButton(event->button()), ToPoint(*event)); });
}

void DrawnWidget::mouseMoveEvent(QMouseEvent* event) {
  peer_.Forward([&] { Drawn().OnMouseMove(HeldButton(event->buttons()), ToPoint(*event)); });
}

void DrawnWidget::mouseReleaseEvent(QMouseEvent* event) {
  const MouseButton button = ToMouseButton(event->button());
  const Point point = ToPoint(*event);
  const bool is_click = press_.Up(button, rect().contains(event->position().toPoint()));
  peer_.Forward([&] { Drawn().OnMouseUp(button, point); });
  if (is_click) peer_.Forward([&] { Drawn().OnClick(button); });
}

void DrawnWidget::AnswerDrag(QDropEvent& event, void (OwnerDrawn::*handler)(DragStep&)) {
  DragStep step = ToStep(event, peer_.Context());
  peer_.Forward([&] { (Drawn().*handler)(step); });
  const int effect = AllowedEffect(step.effect, EffectOf(event.possibleActions()));
  event.setDropAction(effect == kMoves    ? Qt::MoveAction
                      : effect == kCopies ? Qt::CopyAction
                                          : Qt::IgnoreAction);
  event.setAccepted(effect != 0);
}

void DrawnWidget::keyPressEvent(QKeyEvent* event) {
  peer_.Forward([&] { Drawn().OnKeyDown(ToKeyPress(*event)); });
}

void DrawnWidget::keyReleaseEvent(QKeyEvent* event) {
  // A key that repeats is pressed again and again, and released once.
  if (event->isAutoRepeat()) return;
  peer_.Forward([&] { Drawn().OnKeyUp(ToKeyPress(*event)); });
}

OwnerDrawnPeer::OwnerDrawnPeer(PeerContext& context, OwnerDrawn& drawn, QWidget& parent)
    : Peer(context, drawn), drawn_(drawn), widget_(new DrawnWidget(*this, parent)) {
  Follow(drawn_.LookChanged, [this] {
    is_stale_ = true;
    RequestFrame();
  });
  Follow(drawn_.DragAway, [this](DragStep& step) { DragAway(step); });
  Follow(drawn_.Owner()->DefaultButton.Changed, [this] { Lend(); });
  if (auto* container = dynamic_cast<OwnerDrawn*>(drawn_.Parent())) {
    Follow(container->LookChanged, [this] { Lend(); });
  }
  Adopt(widget_);
  Lend();
  FollowAccessKey();
}

OwnerDrawnPeer::~OwnerDrawnPeer() {
  Report([this] { drawn_.OnLent({}); });
}

AmbientLook OwnerDrawnPeer::AmbientOfContainer() const {
  const auto* container = dynamic_cast<const OwnerDrawn*>(drawn_.Parent());
  if (const auto lent = container == nullptr ? std::nullopt : container->LendsToContents()) {
    return *lent;
  }
  const QPalette& palette = widget_->parentWidget()->palette();
  return {.name = {},
          .font = {},
          .back = ToColor(palette.color(QPalette::Window)),
          .fore = ToColor(palette.color(QPalette::WindowText))};
}

// Its own drawing, without the controls on it.
Raster OwnerDrawnPeer::CopyOfContainer() const {
  const int scale = ScaleOf(widget_->devicePixelRatioF());
  QImage copy(widget_->size() * scale, kPixelFormat);
  copy.setDevicePixelRatio(scale);
  copy.fill(Qt::transparent);
  widget_->parentWidget()->render(&copy, {}, widget_->geometry(), QWidget::DrawWindowBackground);
  Raster raster{.width = copy.width(), .height = copy.height(), .pixels = {}};
  for (int y = 0; y < copy.height(); ++y) {
    const auto* row = reinterpret_cast<const std::uint32_t*>(copy.constScanLine(y));
    raster.pixels.insert(raster.pixels.end(), row, row + copy.width());
  }
  return raster;
}

void OwnerDrawnPeer::Lend() {
  widget_->setAcceptDrops(drawn_.TakesDrops());
  // A control has no native window of its own here.
  const LentByHost lent{.native_window = widget_->effectiveWinId(),
                        .native_surface = 0,
                        .ambient = AmbientOfContainer(),
                        .is_default = drawn_.Owner()->DefaultButton.Get() == &drawn_,
                        .copy_of_container = [this] { return CopyOfContainer(); },
                        .boxes = &context_.boxes};
  Report([&] { drawn_.OnLent(lent); });
}

void OwnerDrawnPeer::DragAway(DragStep& step) {
  auto* drag = new QDrag(widget_);
  auto* data = new QMimeData;
  data->setText(ToQt(step.data));
  drag->setMimeData(data);
  QObject::connect(drag, &QDrag::actionChanged, widget_, [&](Qt::DropAction action) {
    step.effect = EffectOf(action);
    Report([&] { drawn_.OnGiveFeedback(step); });
  });
  step.effect = EffectOf(drag->exec(Qt::CopyAction | Qt::MoveAction));
}

void OwnerDrawnPeer::OnFrame() {
  FollowAccessKey();
  widget_->setAcceptDrops(drawn_.TakesDrops());
  UpdateName();
  // A redraw that changed nothing isn't sent to the screen.
  const QImage shown = picture_;
  if (!widget_->isVisible() || Picture(widget_->devicePixelRatioF()) != shown) widget_->update();
  const AccessibleState state = drawn_.StateForReaders();
  NotifyReaders(*widget_, std::exchange(reported_state_, state), state);
}

void OwnerDrawnPeer::FollowAccessKey() {
  const char32_t key = drawn_.AccessKeyChar();
  if (key == access_key_) return;
  access_key_ = key;
  if (shortcut_ != 0) widget_->releaseShortcut(shortcut_);
  shortcut_ = 0;
  if (key == 0) return;
  const QString letter = QString::fromUcs4(&key, 1);
  shortcut_ = widget_->grabShortcut(QKeySequence::mnemonic(QLatin1Char('&') + letter));
}

void OwnerDrawnPeer::OnFocus(bool has_focus) {
  Report([&] { drawn_.OnFocusChanged(has_focus); });
}

void OwnerDrawnPeer::Resize(QSize size) {
  is_stale_ = true;
  Report([&] { drawn_.OnResize({size.width(), size.height()}); });
}

const QImage& OwnerDrawnPeer::Picture(qreal pixel_ratio) {
  const int scale = ScaleOf(pixel_ratio);
  if (!is_stale_ && picture_.devicePixelRatio() == scale) return picture_;
  is_stale_ = false;
  Canvas canvas({widget_->width(), widget_->height()}, scale);
  Report([&] { drawn_.Paint(canvas, context_.text); });
  const QImage drawing = ViewOf(canvas.DevicePixels(), canvas.DeviceWidth(), canvas.DeviceHeight());
  picture_ = drawing.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  picture_.setDevicePixelRatio(scale);
  return picture_;
}

}  // namespace tarnvale
