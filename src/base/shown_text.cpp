#include "base/shown_text.h"

#include <cstddef>
#include <cstdint>

namespace tarnvale {
namespace {

// One character and its length in bytes: 0 for a byte that is no UTF-8, which
// overlong forms, surrogates and numbers above 10FFFF aren't either.
struct Character {
  char32_t value = 0;
  std::size_t bytes = 0;
};

Character FirstOf(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || bytes > text.size()) return {};
  char32_t value = lead & (0xFFU >> (bytes + 1));
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byte(i) & 0xC0U) != 0x80U) return {};
    value = value << 6U | (byte(i) & 0x3FU);
  }
  const char32_t least = bytes == 4 ? 0x10000 : bytes == 3 ? 0x800 : 0x80;
  if (value < least || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return {};
  return {value, bytes};
}

bool IsBetween(char32_t c, char32_t first, char32_t last) {
  return c >= first && c <= last;
}

bool ControlsATerminal(char32_t c) {
  const bool control = c < 0x20 || IsBetween(c, 0x7F, 0x9F);
  const bool line_end = IsBetween(c, 0x2028, 0x2029);
  const bool direction = c == 0x061C || IsBetween(c, 0x200E, 0x200F) ||
                         IsBetween(c, 0x202A, 0x202E) || IsBetween(c, 0x2066, 0x2069);
  return control || line_end || direction;
}

}  // namespace

std::string Shown(std::string_view text) {
  std::string shown;
  shown.reserve(text.size());
  while (!text.empty()) {
    const Character first = FirstOf(text);
    const std::size_t bytes = first.bytes == 0 ? 1 : first.bytes;
    if (first.bytes == 0 || ControlsATerminal(first.value)) {
      shown += '?';
    } else {
      shown += text.substr(0, bytes);
    }
    text.remove_prefix(bytes);
  }
  return shown;
}

}  // namespace tarnvale
