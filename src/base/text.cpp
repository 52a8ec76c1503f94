#include "base/text.h"

#include <algorithm>

#include "base/characters.h"

namespace tarnvale {

std::string ToLower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), InLowerCase<char>);
  return lower;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return InLowerCase(x) == InLowerCase(y); });
}

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string WithBackslash(std::string_view path) {
  std::string result(path);
  if (result.empty() || result.back() != '\\') result += '\\';
  return result;
}

std::string FileNameOf(std::string_view path) {
  const auto last = path.rfind('\\');
  return last == std::string_view::npos ? std::string() : std::string(path.substr(last + 1));
}

std::string FolderOf(std::string_view path) {
  return std::string(path.substr(0, path.rfind('\\') + 1));
}

std::string OneLine(std::string_view text) {
  return WithEachCharacter(text, [](char32_t c) {
    const bool breaks_line = c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029;
    return breaks_line ? U'?' : c;
  });
}

bool FitsOneLine(std::string_view text) {
  using namespace std::string_view_literals;
  return text.find_first_of("\r\n\0"sv) == std::string_view::npos;
}

int CountChar(std::string_view text, std::string_view character) {
  if (CountCharacters(character) != 1) return 0;
  int count = 0;
  for (; !text.empty(); text.remove_prefix(FirstCharacterBytes(text))) {
    if (FirstCharacters(text, 1) == character) ++count;
  }
  return count;
}

}  // namespace tarnvale
