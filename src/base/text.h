// Small operations on texts. A text is bytes in the system's code page.
#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// A letter of ASCII in lower case; every other character stays.
template <class Char>
constexpr Char InLowerCase(Char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<Char>(c - 'A' + 'a') : c;
}

/// ASCII letters to lower case; every other byte stays.
std::string ToLower(std::string_view text);

/// Equal without regard to the case of ASCII letters.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

/// A space or a tab.
bool IsBlank(char c);

/// `text` without the blanks at its two ends.
std::string_view Trimmed(std::string_view text);

/// `path` with a backslash at its end, unless one is there already. An empty
/// path becomes "\".
std::string WithBackslash(std::string_view path);

/// The text behind the last backslash; empty when there is none.
std::string FileNameOf(std::string_view path);
/// The text up to the last backslash, which ends it; empty when there is none.
std::string FolderOf(std::string_view path);

/// `text` on one line: each control character (C0, DEL, C1) and each separator of lines
/// or paragraphs becomes a question mark. Bytes that are no UTF-8 stay.
std::string OneLine(std::string_view text);

/// Whether `text` can be part of one line: it has no line end and no zero byte.
bool FitsOneLine(std::string_view text);

/// How many times the one-character text `character` occurs in `text`: 0 when
/// `character` isn't exactly one character long.
int CountChar(std::string_view text, std::string_view character);

}  // namespace tarnvale
