// Between the program's texts and Qt's.
//
// A text of the program is bytes, nearly always UTF-8. A byte that isn't becomes
// a lone low surrogate (U+DC00 + byte) and turns back into that byte, so that an
// odd file name survives being shown and read back.
#pragma once

#include <QString>

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnvale {

QString ToQt(std::string_view text);
std::string FromQt(const QString& text);

/// Position in ToQt(text) of the character that holds byte `bytes` of `text`;
/// positions beyond the end count as the end.
qsizetype UnitsOf(std::string_view text, std::size_t bytes);
/// How many bytes the first `units` code units of a text have.
std::size_t BytesOf(const QString& text, qsizetype units);

/// "\r\n", "\r" and "\n" all become "\n".
QString WithPlainLineEnds(QString text);

/// A text that is only shown, and may hold a name that anybody chose: each control
/// character but tabs and line ends, and each one that turns the direction of
/// writing, becomes a question mark. Line ends become "\n".
QString ToShown(std::string_view text);
/// The same of a text of Qt's own.
QString WithoutControls(QString text);

}  // namespace tarnvale
