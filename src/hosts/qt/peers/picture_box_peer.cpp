#include "hosts/qt/peers/picture_box_peer.h"

#include <QMouseEvent>
#include <QPainter>

#include "hosts/qt/peers/accessible.h"
#include "hosts/qt/qt_look.h"
#include "hosts/qt/qt_pictures.h"
#include "ui/press.h"

namespace tarnvale {

class PictureWidget final : public QWidget, public AccessibleSource {
 public:
  PictureWidget(PictureBoxPeer& peer, QWidget& parent) : QWidget(&parent), peer_(peer) {}

  void TakePicture() {
    picture_ = PictureNamed(peer_.ThePicture().Picture);
    update();
  }
  PictureBox::Ground Ground() const { return peer_.ThePicture().Background; }

  QAccessible::Role AccessibleRole() const override {
    return picture_.isNull() ? QAccessible::Grouping : QAccessible::Graphic;
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    PaintGround(painter);
    picture_.paint(&painter, rect());
  }
  void mousePressEvent(QMouseEvent* event) override { press_.Down(ToMouseButton(event->button())); }
  void mouseReleaseEvent(QMouseEvent* event) override {
    const bool is_inside = rect().contains(event->position().toPoint());
    const bool is_click = press_.Up(ToMouseButton(event->button()), is_inside);
    if (is_click && event->button() == Qt::LeftButton) peer_.Click();
  }

 private:
  void PaintGround(QPainter& painter) const;

  PictureBoxPeer& peer_;
  QIcon picture_;
  Press press_;
};

void PictureWidget::PaintGround(QPainter& painter) const {
  switch (Ground()) {
    case PictureBox::Ground::kWindow:
      return;
    case PictureBox::Ground::kTaskPanel: {
      QLinearGradient ground(0, 0, 0, height());
      ground.setColorAt(0, QColor(palette::kPanelTop));
      ground.setColorAt(1, QColor(palette::kPanelBottom));
      painter.fillRect(rect(), ground);
      painter.fillRect(QRect(width() - 1, 0, 1, height()), QColor(palette::kPanelEdge));
      return;
    }
    case PictureBox::Ground::kField:
      painter.fillRect(rect(), QColor(palette::kFieldFrame));
      painter.fillRect(rect().adjusted(1, 1, -1, -1), QColor(palette::kField));
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
  Follow(picture_.Picture.Changed, [this] { widget_->TakePicture(); });
  Adopt(widget_);
}

void PictureBoxPeer::Click() {
  Report([this] { picture_.Clicked.Emit(); });
}

}  // namespace tarnvale
