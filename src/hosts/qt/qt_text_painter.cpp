#include "hosts/qt/qt_text_painter.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

#include "hosts/qt/qt_look.h"
#include "hosts/qt/qt_pixels.h"
#include "hosts/qt/qt_text.h"
#include "ui/caption_text.h"

namespace tarnvale {
namespace {

struct ShownText {
  QString text;
  qsizetype key = -1;  ///< where its access key is; -1 for none
};

ShownText Shown(const std::string& text, const TextLook& look) {
  if (!look.access_key_marks) return {.text = ToQt(text)};
  const CaptionText caption = ReadCaption(text);
  return {.text = ToQt(caption.shown),
          .key = caption.key ? UnitsOf(caption.shown, *caption.key) : -1};
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
QRectF Underline(const QFontMetricsF& metrics, const ShownText& shown, QPointF origin, int scale) {
  const double left = metrics.horizontalAdvance(shown.text.left(shown.key));
  const double right = metrics.horizontalAdvance(shown.text.left(shown.key + 1));
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
  const ShownText shown = Shown(text, look);
  return {static_cast<int>(std::ceil(metrics.horizontalAdvance(shown.text))),
          static_cast<int>(std::ceil(metrics.height()))};
}

void QtTextPainter::Draw(Canvas& canvas, const std::string& text, const TextLook& look, Rect area) {
  if (text.empty() || canvas.DeviceWidth() == 0 || canvas.DeviceHeight() == 0) return;
  const int scale = canvas.Scale();
  QImage image = ViewOf(canvas.DevicePixels(), canvas.DeviceWidth(), canvas.DeviceHeight());
  const QFont& font = FontFor(look.font, scale);
  const QFontMetricsF metrics(font);
  const ShownText shown = Shown(text, look);
  const QRectF device(area.left_px * scale, area.top_px * scale, area.width_px * scale,
                      area.height_px * scale);
  const double width = metrics.horizontalAdvance(shown.text);
  const double top = device.top() + std::floor((device.height() - metrics.height()) / 2);
  const QPointF origin(LeftOf(device, width, look.align), std::round(top + metrics.ascent()));
  QPainter painter(&image);
  painter.setClipRect(device);
  painter.setFont(font);
  painter.setPen(ToQColor(look.color));
  painter.drawText(origin, shown.text);
  if (shown.key >= 0 && look.show_access_key) {
    painter.fillRect(Underline(metrics, shown, origin, scale), ToQColor(look.color));
  }
}

}  // namespace tarnvale
