#include "hosts/qt/peers/mask.h"

#include <algorithm>

namespace tarnvale::mask {
namespace {

constexpr QLatin1Char kDigit('#');
constexpr QLatin1Char kEmpty('0');

bool IsDigit(QChar character) {
  return character >= u'0' && character <= u'9';
}

}  // namespace

QString Blank(const QString& mask) {
  QString text = mask;
  return text.replace(kDigit, kEmpty);
}

QString Fit(const QString& mask, const QString& text) {
  QString result = Blank(mask);
  Type(mask, result, 0, text);
  return result;
}

qsizetype PlaceFrom(const QString& mask, qsizetype from) {
  const qsizetype place = mask.indexOf(kDigit, from);
  return place < 0 ? mask.size() : place;
}

qsizetype PlaceBefore(const QString& mask, qsizetype from) {
  return from <= 0 ? -1 : mask.lastIndexOf(kDigit, from - 1);
}

void Clear(const QString& mask, QString& text, qsizetype from, qsizetype to) {
  for (qsizetype at = PlaceFrom(mask, from); at < std::min(to, text.size());
       at = PlaceFrom(mask, at + 1)) {
    text[at] = kEmpty;
  }
}

qsizetype Type(const QString& mask, QString& text, qsizetype from, const QString& typed) {
  qsizetype at = from;
  for (const QChar character : typed) {
    if (!IsDigit(character)) continue;
    at = PlaceFrom(mask, at);
    if (at >= text.size()) break;
    text[at++] = character;
  }
  return at < mask.size() ? PlaceFrom(mask, at) : mask.size();
}

}  // namespace tarnvale::mask
