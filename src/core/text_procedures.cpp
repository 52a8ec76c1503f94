#include "core/text_procedures.h"

#include <algorithm>
#include <string_view>

#include "base/characters.h"
#include "base/failure.h"

namespace tarnvale {

std::string pReplace(std::string& text, const std::string& search, const std::string& replacement) {
  const std::size_t length_at_first = CountCharacters(text);
  const std::size_t search_length = CountCharacters(search);
  if (length_at_first < search_length) return text;
  // Required: one step on after a match, not past the replacement.
  std::size_t at = 0;
  for (std::size_t i = 0; i < length_at_first; ++i) {
    const std::string_view rest = std::string_view(text).substr(at);
    if (FirstCharacters(rest, search_length) == search)
      text.replace(at, search.size(), replacement);
    if (at == text.size()) break;
    at += FirstCharacterBytes(std::string_view(text).substr(at));
  }
  return text;
}

std::string GetFolder(const std::string& path, std::int16_t level) {
  if (path.empty()) return {};
  std::size_t start = 0;
  for (int skipped = 0; skipped < level; ++skipped) {
    const std::size_t separator = path.find('\\', start);
    // Required: the search runs its 16-bit position out instead of stopping.
    if (separator == std::string::npos) throw ProgramError(kOverflow);
    start = separator + 1;
    if (CountCharacters(std::string_view(path).substr(start)) <= 1) return "Default Folder";
  }
  const std::size_t end = std::min(path.find('\\', start), path.size() - 1);
  return path.substr(start, end - start + 1);
}

}  // namespace tarnvale
