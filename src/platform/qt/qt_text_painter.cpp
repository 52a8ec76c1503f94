#include "platform/qt/qt_text_painter.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

#include <cmath>

#include "platform/qt/qt_look.h"
#include "platform/qt/qt_text.h"

namespace tarnvale {
namespace {

/// A caption without its marks, and where its access key stands.
struct MarkedText {
  QString text;
  qsizetype key = -1;
};

MarkedText Unmark(const QString& caption, bool has_marks) {
  if (!has_marks) return {caption, -1};
  MarkedText result;
  for (qsizetype at = 0; at < caption.size(); ++at) {
    if (caption[at] == QLatin1Char('&')) {
      if (++at == caption.size()) break;
      if (caption[at] != QLatin1Char('&') && result.key < 0) result.key = result.text.size();
    }
    result.text += caption[at];
  }
  return result;
}

QColor ToQColor(Color color) {
  return {RedOf(color), GreenOf(color), BlueOf(color)};
}

double LeftOf(const QRectF& area, double width, TextLook::Align align) {
  switch (align) {
    case TextLook::Align::kCenter:
      return area.left() + std::floor((area.width() - width) / 2);
    case TextLook::Align::kRight:
      return area.right() - width;
    case TextLook::Align::kLeft:
      break;
  }
  return area.left();
}

/// The line below one character of a text that begins at `origin`.
QRectF Underline(const QFontMetricsF& metrics, const MarkedText& marked, QPointF origin,
                 int scale) {
  const double left = metrics.horizontalAdvance(marked.text.left(marked.key));
  const double right = metrics.horizontalAdvance(marked.text.left(marked.key + 1));
  return {std::round(origin.x() + left), origin.y() + scale, std::round(right - left),
          static_cast<double>(scale)};
}

}  // namespace

const QFont& QtTextPainter::FontFor(const Font& font, int scale) {
  const Key key{font.family, font.size_pt, font.bold, font.italic, scale * 2 + font.underline};
  const auto known = fonts_.find(key);
  if (known != fonts_.end()) return known->second;
  QFont made = ProgramFont(font.size_pt * scale, font.bold);
  if (!font.family.empty()) made.setFamily(ToQt(font.family));
  made.setItalic(font.italic);
  made.setUnderline(font.underline);
  return fonts_.emplace(key, made).first->second;
}

Size QtTextPainter::Measure(const std::string& text, const TextLook& look) {
  const QFontMetricsF metrics(FontFor(look.font, 1));
  const MarkedText marked = Unmark(ToQt(text), look.access_key_marks);
  return {static_cast<int>(std::ceil(metrics.horizontalAdvance(marked.text))),
          static_cast<int>(std::ceil(metrics.height()))};
}

void QtTextPainter::Draw(Canvas& canvas, const std::string& text, const TextLook& look, Rect area) {
  if (text.empty() || canvas.DeviceWidth() == 0 || canvas.DeviceHeight() == 0) return;
  const int scale = canvas.Scale();
  // Red in the low byte is Qt's RGBA order in memory on little-endian machines.
  QImage image(reinterpret_cast<uchar*>(canvas.DevicePixels()), canvas.DeviceWidth(),
               canvas.DeviceHeight(), QImage::Format_RGBA8888);
  const QFont& font = FontFor(look.font, scale);
  const QFontMetricsF metrics(font);
  const MarkedText marked = Unmark(ToQt(text), look.access_key_marks);
  const QRectF device(area.left_px * scale, area.top_px * scale, area.width_px * scale,
                      area.height_px * scale);
  const double width = metrics.horizontalAdvance(marked.text);
  const double top = device.top() + std::floor((device.height() - metrics.height()) / 2);
  const QPointF origin(LeftOf(device, width, look.align), std::round(top + metrics.ascent()));
  QPainter painter(&image);
  painter.setClipRect(device);
  painter.setFont(font);
  painter.setPen(ToQColor(look.color));
  painter.drawText(origin, marked.text);
  if (marked.key >= 0 && look.show_access_key) {
    painter.fillRect(Underline(metrics, marked, origin, scale), ToQColor(look.color));
  }
}

}  // namespace tarnvale
