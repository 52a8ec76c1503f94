#include "hosts/qt/peers/picture_box_peer.h"

#include <QMouseEvent>
#include <QPainter>

#include "hosts/qt/peers/accessible.h"
#include "hosts/qt/qt_look.h"
#include "hosts/qt/qt_pixels.h"

namespace tarnvale {

QPixmap ToPixmap(const Raster& picture, qreal pixel_ratio) {
  if (picture.Empty()) return {};
  const QImage view = ViewOf(picture.pixels.data(), picture.width, picture.height);
  QPixmap pixmap = QPixmap::fromImage(view);
  pixmap.setDevicePixelRatio(pixel_ratio);
  return pixmap;
}

class PictureWidget final : public QWidget, public AccessibleSource {
 public:
  PictureWidget(PictureBoxPeer& peer, QWidget& parent) : QWidget(&parent), peer_(peer) {}

  void TakePicture() {
    at_1x_ = ToPixmap(peer_.ThePicture().Picture, 1);
    at_2x_ = ToPixmap(peer_.ThePicture().PictureAt2x, 2);
    update();
  }
  PictureBox::Ground Ground() const { return peer_.ThePicture().Background; }

  QAccessible::Role AccessibleRole() const override {
    return at_1x_.isNull() && at_2x_.isNull() ? QAccessible::Grouping : QAccessible::Graphic;
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    PaintGround(painter);
    const bool fine = at_1x_.isNull() || (devicePixelRatioF() > 1.25 && !at_2x_.isNull());
    painter.drawPixmap(0, 0, fine ? at_2x_ : at_1x_);
  }
  void mousePressEvent(QMouseEvent* event) override {
    is_pressed_ = event->button() == Qt::LeftButton;
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton || !is_pressed_) return;
    is_pressed_ = false;
    if (rect().contains(event->position().toPoint())) peer_.Click();
  }

 private:
  void PaintGround(QPainter& painter) const;

  PictureBoxPeer& peer_;
  QPixmap at_1x_;
  QPixmap at_2x_;
  bool is_pressed_ = false;
};

void PictureWidget::PaintGround(QPainter& painter) const {
  switch (Ground()) {
    case PictureBox::Ground::kWindow:
      return;
    case PictureBox::Ground::kTaskPanel: {
      QLinearGradient ground(0, 0, 0, height());
      ground.setColorAt(0, QColor(look::kPanelTop));
      ground.setColorAt(1, QColor(look::kPanelBottom));
      painter.fillRect(rect(), ground);
      painter.fillRect(QRect(width() - 1, 0, 1, height()), QColor(look::kPanelEdge));
      return;
    }
    case PictureBox::Ground::kField:
      painter.fillRect(rect(), QColor(look::kFieldFrame));
      painter.fillRect(rect().adjusted(1, 1, -1, -1), QColor(look::kField));
      return;
  }
}

bool IsTaskPanel(const QWidget& widget) {
  const auto* picture = dynamic_cast<const PictureWidget*>(&widget);
  return picture != nullptr && picture->Ground() == PictureBox::Ground::kTaskPanel;
}

PictureBoxPeer::PictureBoxPeer(PeerContext& context, PictureBox& picture, QWidget& parent)
    : Peer(context, picture), picture_(picture), widget_(new PictureWidget(*this, parent)) {
  widget_->TakePicture();
  Follow(picture_.PictureChanged, [this] { widget_->TakePicture(); });
  Adopt(widget_);
}

void PictureBoxPeer::Click() {
  Report([this] { picture_.Clicked.Emit(); });
}

}  // namespace tarnvale
