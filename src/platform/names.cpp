#include "platform/names.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "base/characters.h"
#include "base/text.h"

namespace tarnvale {
namespace {

// Behind the one character at `at`.
std::size_t BehindCharacter(std::string_view text, std::size_t at) {
  return at + FirstCharacterBytes(text.substr(at));
}

}  // namespace

bool ComesBefore(std::string_view a, std::string_view b) {
  const std::size_t shared = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < shared; ++i) {
    const auto x = static_cast<unsigned char>(InLowerCase(a[i]));
    const auto y = static_cast<unsigned char>(InLowerCase(b[i]));
    if (x != y) return x < y;
  }
  return a.size() != b.size() ? a.size() < b.size() : a < b;
}

void SortNames(std::vector<std::string>& names) {
  std::sort(names.begin(), names.end(), ComesBefore);
}

void SortContents(FolderContents& contents) {
  SortNames(contents.folders);
  std::sort(contents.files.begin(), contents.files.end(),
            [](const FolderEntry& a, const FolderEntry& b) { return ComesBefore(a.name, b.name); });
}

bool MatchesPattern(std::string_view name, std::string_view pattern) {
  if (pattern.empty() || pattern == "*.*") return true;
  std::size_t in_name = 0;
  std::size_t in_pattern = 0;
  std::optional<std::size_t> star;  // behind the last star
  std::size_t star_end = 0;         // where what it took ends
  while (in_name < name.size()) {
    if (in_pattern < pattern.size() && pattern[in_pattern] == '*') {
      star = ++in_pattern;
      star_end = in_name;
    } else if (in_pattern < pattern.size() && pattern[in_pattern] == '?') {
      ++in_pattern;
      in_name = BehindCharacter(name, in_name);
    } else if (in_pattern < pattern.size() && pattern[in_pattern] == name[in_name]) {
      ++in_pattern;
      ++in_name;
    } else if (star) {
      in_pattern = *star;
      in_name = star_end = BehindCharacter(name, star_end);
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', in_pattern) == std::string_view::npos;
}

}  // namespace tarnvale
