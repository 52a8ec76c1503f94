#include "platform/path_text.h"

#include <algorithm>
#include <cstddef>

namespace tarnvale {
namespace {

bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace

bool IsSeparator(char c) {
  return c == '\\' || c == '/';
}

bool IsPathLanguage(std::string_view name) {
  return name.find_first_of("\\/") != std::string_view::npos ||
         (name.size() >= 2 && name[1] == ':');
}

bool EndsInSeparator(std::string_view path) {
  return !path.empty() && IsSeparator(path.back());
}

std::optional<PathText> TakeApart(std::string_view path) {
  if (path.find('\0') != std::string_view::npos) return std::nullopt;
  PathText parts;
  if (path.size() >= 2 && path[1] == ':') {
    if (!IsLetter(path[0])) return std::nullopt;
    parts.drive = path[0] >= 'a' ? static_cast<char>(path[0] - 'a' + 'A') : path[0];
    path.remove_prefix(2);
  } else if (path.empty() || !IsSeparator(path[0])) {
    return std::nullopt;
  }
  parts.begins_twice =
      parts.drive == 0 && path.size() > 2 && IsSeparator(path[1]) && !IsSeparator(path[2]);
  for (std::size_t at = 0; at < path.size();) {
    const auto found = std::find_if(path.begin() + static_cast<std::ptrdiff_t>(at), path.end(),
                                    [](char c) { return IsSeparator(c); });
    const auto end = static_cast<std::size_t>(found - path.begin());
    const std::string_view name = path.substr(at, end - at);
    if (name == "..") {
      if (!parts.names.empty()) parts.names.pop_back();
    } else if (!name.empty() && name != ".") {
      parts.names.push_back(name);
    }
    at = end + 1;
  }
  return parts;
}

}  // namespace tarnvale
