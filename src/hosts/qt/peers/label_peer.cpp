#include "hosts/qt/peers/label_peer.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include "hosts/qt/peers/accessible.h"
#include "hosts/qt/peers/picture_box_peer.h"
#include "hosts/qt/qt_look.h"
#include "hosts/qt/qt_text.h"
#include "ui/press.h"

namespace tarnvale {

class LabelWidget final : public QWidget, public AccessibleSource {
 public:
  LabelWidget(LabelPeer& peer, QWidget& parent) : QWidget(&parent), peer_(peer) {
    setFont(FontOf(peer.TheLabel().Role));
    if (!IsLink()) return;
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
  }

  QString text;

  QAccessible::Role AccessibleRole() const override {
    return IsLink() ? QAccessible::Link : QAccessible::StaticText;
  }
  bool CanBePressed() const override { return IsLink(); }
  void PressAccessibly() override { peer_.Click(); }

 protected:
  void paintEvent(QPaintEvent*) override;
  bool event(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  bool IsLink() const { return peer_.TheLabel().Role == TextRole::kLink; }
  bool IsBlock() const { return peer_.TheLabel().Wrap || text.contains(QLatin1Char('\n')); }
  /// The heading of a group in the task panel is in a bar of its own.
  bool IsPanelHeading() const {
    return peer_.TheLabel().Role == TextRole::kHeading && IsTaskPanel(*parentWidget());
  }
  QRect TextArea() const { return IsPanelHeading() ? rect().adjusted(9, 0, -6, 0) : rect(); }
  QString Shown() const;
  int Alignment() const;
  void PaintPanelHeading(QPainter& painter) const;
  void PaintFocus(QPainter& painter, const QString& shown) const;

  LabelPeer& peer_;
  Press press_;
};

QString LabelWidget::Shown() const {
  if (IsBlock()) return text;
  const bool middle = peer_.TheLabel().Role == TextRole::kValue;
  return fontMetrics().elidedText(text, middle ? Qt::ElideMiddle : Qt::ElideRight,
                                  TextArea().width());
}

int LabelWidget::Alignment() const {
  int flags = IsBlock() ? Qt::AlignTop : Qt::AlignVCenter;
  switch (peer_.TheLabel().Align) {
    case TextAlign::kLeft:
      flags |= Qt::AlignLeft;
      break;
    case TextAlign::kCenter:
      flags |= Qt::AlignHCenter;
      break;
    case TextAlign::kRight:
      flags |= Qt::AlignRight;
      break;
  }
  if (peer_.TheLabel().Wrap) flags |= Qt::TextWordWrap;
  return flags;
}

void LabelWidget::PaintPanelHeading(QPainter& painter) const {
  QLinearGradient bar(0, 0, width(), 0);
  bar.setColorAt(0, Qt::white);
  bar.setColorAt(1, QColor(palette::kPanelBar));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(bar);
  painter.drawRoundedRect(rect(), 3, 3);
  painter.drawRect(rect().adjusted(0, height() / 2, 0, 0));
  painter.setRenderHint(QPainter::Antialiasing, false);
}

void LabelWidget::PaintFocus(QPainter& painter, const QString& shown) const {
  QRect ring = fontMetrics().boundingRect(TextArea(), Alignment(), shown);
  ring = ring.adjusted(-2, 0, 1, 0).intersected(rect().adjusted(0, 0, -1, -1));
  painter.setPen(QPen(QColor(palette::kLink), 1, Qt::DotLine));
  painter.drawRect(ring);
}

void LabelWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (IsPanelHeading()) PaintPanelHeading(painter);
  const bool is_over = IsLink() && isEnabled() && underMouse();
  QFont shown_font = font();
  shown_font.setUnderline(is_over);
  painter.setFont(shown_font);
  painter.setPen(is_over ? QColor(palette::kLinkOver)
                         : ColorOf(peer_.TheLabel().Role, isEnabled()));
  const QString shown = Shown();
  painter.drawText(TextArea(), Alignment(), shown);
  if (IsLink() && hasFocus()) PaintFocus(painter, shown);
}

bool LabelWidget::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::Enter:
    case QEvent::Leave:
      if (IsLink()) update();
      break;
    // Only a link has the focus. It loses it when its window is hidden at the program's end,
    // too, and the record may have gone by then.
    case QEvent::FocusIn:
    case QEvent::FocusOut:
      update();
      break;
    case QEvent::ToolTip:
      if (toolTip().isEmpty() && !IsBlock() && Shown() != text) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text, this);
        return true;
      }
      break;
    default:
      break;
  }
  return QWidget::event(event);
}

void LabelWidget::mousePressEvent(QMouseEvent* event) {
  press_.Down(ToMouseButton(event->button()));
}

void LabelWidget::mouseReleaseEvent(QMouseEvent* event) {
  const bool is_inside = rect().contains(event->position().toPoint());
  const bool is_click = press_.Up(ToMouseButton(event->button()), is_inside);
  if (is_click && event->button() == Qt::LeftButton) peer_.Click();
}

void LabelWidget::keyPressEvent(QKeyEvent* event) {
  const Key key = ToKeyPress(*event).key;
  if (IsLink() && (key == Key::kSpace || key == Key::kEnter)) {
    if (!event->isAutoRepeat()) peer_.Click();
    return;
  }
  QWidget::keyPressEvent(event);
}

LabelPeer::LabelPeer(PeerContext& context, Label& label, QWidget& parent)
    : Peer(context, label), label_(label), widget_(new LabelWidget(*this, parent)) {
  widget_->text = ToShown(label_.Shown());
  Follow(label_.Caption.Changed(), [this] { RequestFrame(); });
  Adopt(widget_);
  if (label_.Role == TextRole::kLink && label_.Pointer.Get() == PointerShape::kDefault) {
    widget_->setCursor(Qt::PointingHandCursor);
  }
}

void LabelPeer::OnFrame() {
  widget_->text = ToShown(label_.Shown());
  UpdateName();
  widget_->update();
}

void LabelPeer::Click() {
  Report([this] { label_.Clicked.Emit(); });
}

}  // namespace tarnvale
