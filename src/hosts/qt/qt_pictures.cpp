#include "hosts/qt/qt_pictures.h"

#include <QPainter>
#include <QPainterPath>

#include "hosts/qt/qt_look.h"

namespace tarnvale {
namespace {

using DrawPicture = void (*)(QPainter& painter);

/// A square picture of `side` logical pixels that `draw` paints in that unit.
QPixmap Draw(int side, qreal pixel_ratio, DrawPicture draw) {
  const int device = static_cast<int>(side * pixel_ratio);
  QPixmap pixmap(device, device);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.scale(pixel_ratio, pixel_ratio);
  painter.setRenderHint(QPainter::Antialiasing);
  draw(painter);
  painter.end();
  pixmap.setDevicePixelRatio(pixel_ratio);
  return pixmap;
}

QIcon SmallIcon(DrawPicture draw) {
  QIcon icon;
  for (const int ratio : {1, 2, 3}) icon.addPixmap(Draw(16, ratio, draw));
  return icon;
}

QLinearGradient Shade(qreal top, qreal bottom, QRgb light, QRgb dark) {
  QLinearGradient shade(0, top, 0, bottom);
  shade.setColorAt(0, QColor(light));
  shade.setColorAt(1, QColor(dark));
  return shade;
}

void DrawDisc(QPainter& painter, QRgb light, QRgb dark, QRgb edge) {
  painter.setPen(QPen(QColor(edge), 1));
  painter.setBrush(Shade(2, 30, light, dark));
  painter.drawEllipse(QRectF(1.5, 1.5, 29, 29));
  painter.setPen(QPen(QColor(255, 255, 255, 90), 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(QRectF(2.5, 2.5, 27, 27));
}

void DrawSign(QPainter& painter, QChar sign, QRgb color, qreal top) {
  QFont font = ProgramFont(16, true);
  font.setHintingPreference(QFont::PreferNoHinting);
  QPainterPath path;
  path.addText(0, 0, font, sign);
  const QRectF bounds = path.boundingRect();
  path.translate(16 - bounds.center().x(), top - bounds.center().y());
  painter.fillPath(path, QColor(color));
}

void DrawInformation(QPainter& painter) {
  DrawDisc(painter, 0xFF6FA8F5, 0xFF2A63C4, 0xFF234F9B);
  DrawSign(painter, QLatin1Char('i'), 0xFFFFFFFF, 16);
}

void DrawQuestion(QPainter& painter) {
  DrawDisc(painter, 0xFF6FA8F5, 0xFF2A63C4, 0xFF234F9B);
  DrawSign(painter, QLatin1Char('?'), 0xFFFFFFFF, 16);
}

void DrawExclamation(QPainter& painter) {
  QPainterPath triangle;
  triangle.moveTo(16, 4);
  triangle.lineTo(29, 27.5);
  triangle.lineTo(3, 27.5);
  triangle.closeSubpath();
  const QPen edge(QColor(0xC0, 0x8A, 0x00), 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  painter.strokePath(triangle, edge);
  const QBrush inside = Shade(3, 29, 0xFFFFE680, 0xFFF8BE1C);
  painter.strokePath(triangle, QPen(inside, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.fillPath(triangle, inside);
  DrawSign(painter, QLatin1Char('!'), 0xFF3A2C00, 19);
}

void DrawStop(QPainter& painter) {
  DrawDisc(painter, 0xFFF58A78, 0xFFC9301C, 0xFF9E2415);
  painter.setPen(QPen(Qt::white, 3.4, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(11.2, 11.2), QPointF(20.8, 20.8));
  painter.drawLine(QPointF(20.8, 11.2), QPointF(11.2, 20.8));
}

void DrawFile(QPainter& painter) {
  QPainterPath page;
  page.moveTo(3.5, 1.5);
  page.lineTo(9.5, 1.5);
  page.lineTo(12.5, 4.5);
  page.lineTo(12.5, 14.5);
  page.lineTo(3.5, 14.5);
  page.closeSubpath();
  painter.setPen(QPen(QColor(look::kFieldFrame), 1));
  painter.setBrush(Shade(1, 15, 0xFFFFFFFF, 0xFFEAF0F8));
  painter.drawPath(page);
  painter.drawPolyline(QPolygonF({{9.5, 1.5}, {9.5, 4.5}, {12.5, 4.5}}));
  painter.setPen(QPen(QColor(0xB9, 0xC9, 0xDD), 1));
  for (const qreal y : {7.5, 9.5, 11.5}) painter.drawLine(QPointF(5.5, y), QPointF(10.5, y));
}

void DrawFolder(QPainter& painter) {
  QPainterPath back;
  back.moveTo(1.5, 3.5);
  back.lineTo(6, 3.5);
  back.lineTo(7.5, 5);
  back.lineTo(14.5, 5);
  back.lineTo(14.5, 13.5);
  back.lineTo(1.5, 13.5);
  back.closeSubpath();
  painter.setPen(QPen(QColor(0xC0, 0x93, 0x2E), 1));
  painter.setBrush(QColor(0xF2, 0xCB, 0x66));
  painter.drawPath(back);
  painter.setBrush(Shade(6, 14, 0xFFFFEFB0, 0xFFF7D36B));
  painter.drawRect(QRectF(1.5, 6.5, 13, 7));
}

void DrawComputer(QPainter& painter) {
  painter.setPen(QPen(QColor(0x6B, 0x7B, 0x93), 1));
  painter.setBrush(Shade(1, 11, 0xFFF4F6FA, 0xFFC9D3E2));
  painter.drawRoundedRect(QRectF(1.5, 1.5, 13, 10), 1.5, 1.5);
  painter.setBrush(Shade(3, 9, 0xFF7FB2F2, 0xFF2F69C2));
  painter.drawRect(QRectF(3.5, 3.5, 9, 6));
  painter.setBrush(QColor(0xC9, 0xD3, 0xE2));
  painter.drawRect(QRectF(4.5, 12.5, 7, 2));
}

}  // namespace

QPixmap BoxPicture(BoxIcon icon, qreal pixel_ratio) {
  switch (icon) {
    case BoxIcon::kNone:
      break;
    case BoxIcon::kInformation:
      return Draw(32, pixel_ratio, DrawInformation);
    case BoxIcon::kQuestion:
      return Draw(32, pixel_ratio, DrawQuestion);
    case BoxIcon::kExclamation:
      return Draw(32, pixel_ratio, DrawExclamation);
    case BoxIcon::kStop:
      return Draw(32, pixel_ratio, DrawStop);
  }
  return {};
}

QIcon FileIcon() {
  return SmallIcon(DrawFile);
}
QIcon FolderIcon() {
  return SmallIcon(DrawFolder);
}
QIcon ComputerIcon() {
  return SmallIcon(DrawComputer);
}

}  // namespace tarnvale
