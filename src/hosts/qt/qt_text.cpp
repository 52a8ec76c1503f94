#include "hosts/qt/qt_text.h"

#include <QByteArrayView>
#include <QUtf8StringView>

#include <algorithm>
#include <utility>

namespace tarnvale {
namespace {

constexpr char16_t kEscape = 0xDC00;

bool IsEscape(const QString& text, qsizetype at) {
  const char16_t unit = text[at].unicode();
  if (unit < kEscape + 0x80 || unit > kEscape + 0xFF) return false;
  return at == 0 || !text[at - 1].isHighSurrogate();
}

/// A control character (C0, DEL, C1), or one that ends a line or paragraph or turns
/// the direction of writing.
bool IsControl(char16_t c) {
  if (c == u'\n' || c == u'\t') return false;
  const auto is_between = [c](char16_t first, char16_t last) { return c >= first && c <= last; };
  return c < 0x20 || is_between(0x7F, 0x9F) || c == 0x061C || is_between(0x200E, 0x200F) ||
         is_between(0x2028, 0x202E) || is_between(0x2066, 0x2069);
}

/// Length of the valid character that `bytes` begins with; 0 for none.
qsizetype CharacterLength(std::string_view bytes) {
  const std::size_t most = std::min<std::size_t>(bytes.size(), 4);
  for (std::size_t length = 1; length <= most; ++length) {
    const QByteArrayView view(bytes.data(), static_cast<qsizetype>(length));
    if (view.isValidUtf8()) return static_cast<qsizetype>(length);
  }
  return 0;
}

}  // namespace

QString ToQt(std::string_view text) {
  const auto size = static_cast<qsizetype>(text.size());
  if (QByteArrayView(text.data(), size).isValidUtf8()) {
    return QString::fromUtf8(text.data(), size);
  }
  QString result;
  while (!text.empty()) {
    const qsizetype length = CharacterLength(text);
    if (length == 0) {
      result += QChar(static_cast<char16_t>(kEscape + static_cast<unsigned char>(text[0])));
      text.remove_prefix(1);
    } else {
      result += QString::fromUtf8(text.data(), length);
      text.remove_prefix(static_cast<std::size_t>(length));
    }
  }
  return result;
}

std::string FromQt(const QString& text) {
  std::string result;
  qsizetype begun = 0;
  for (qsizetype at = 0; at < text.size(); ++at) {
    if (!IsEscape(text, at)) continue;
    result += text.mid(begun, at - begun).toStdString();
    result += static_cast<char>(text[at].unicode() - kEscape);
    begun = at + 1;
  }
  result += begun == 0 ? text.toStdString() : text.mid(begun).toStdString();
  return result;
}

qsizetype UnitsOf(std::string_view text, std::size_t bytes) {
  return ToQt(text.substr(0, std::min(bytes, text.size()))).size();
}

std::size_t BytesOf(const QString& text, qsizetype units) {
  return FromQt(text.left(units)).size();
}

QString WithPlainLineEnds(QString text) {
  text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  return text;
}

QString ToShown(std::string_view text) {
  return WithoutControls(ToQt(text));
}

QString WithoutControls(QString text) {
  text = WithPlainLineEnds(std::move(text));
  for (QChar& c : text) {
    if (IsControl(c.unicode())) c = QLatin1Char('?');
  }
  return text;
}

UnmarkedCaption Unmark(const QString& caption) {
  UnmarkedCaption result;
  for (qsizetype at = 0; at < caption.size(); ++at) {
    if (caption[at] == QLatin1Char('&')) {
      if (++at == caption.size()) break;
      if (caption[at] != QLatin1Char('&') && result.key < 0) result.key = result.text.size();
    }
    result.text += caption[at];
  }
  return result;
}

}  // namespace tarnvale
