#include "base/shown_text.h"

#include <cstddef>

#include "base/characters.h"

namespace tarnvale {
namespace {

bool IsBetween(char32_t c, char32_t first, char32_t last) {
  return c >= first && c <= last;
}

}  // namespace

bool IsControl(char32_t c) {
  const bool control = c < 0x20 || IsBetween(c, 0x7F, 0x9F);
  const bool line_end = IsBetween(c, 0x2028, 0x2029);
  const bool direction = c == 0x061C || IsBetween(c, 0x200E, 0x200F) ||
                         IsBetween(c, 0x202A, 0x202E) || IsBetween(c, 0x2066, 0x2069);
  return control || line_end || direction;
}

std::string Shown(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const Character first = FirstCharacter(text);
    const std::size_t bytes = first.bytes == 0 ? 1 : first.bytes;
    if (first.bytes == 0 || IsControl(first.value)) {
      shown += '?';
    } else {
      shown += text.substr(0, bytes);
    }
    text.remove_prefix(bytes);
  }
  return shown;
}

}  // namespace tarnvale
