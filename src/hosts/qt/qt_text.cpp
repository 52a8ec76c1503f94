#include "hosts/qt/qt_text.h"

#include <QByteArrayView>
#include <QUtf8StringView>

#include <algorithm>
#include <utility>

#include "base/shown_text.h"

namespace tarnvale {
namespace {

constexpr char16_t kEscape = 0xDC00;

bool IsEscape(const QString& text, qsizetype at) {
  const char16_t unit = text[at].unicode();
  if (unit < kEscape + 0x80 || unit > kEscape + 0xFF) return false;
  return at == 0 || !text[at - 1].isHighSurrogate();
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
    const bool is_layout = c == QLatin1Char('\n') || c == QLatin1Char('\t');
    if (!is_layout && IsControl(c.unicode())) c = QLatin1Char('?');
  }
  return text;
}

}  // namespace tarnvale
