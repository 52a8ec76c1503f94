#include "hosts/windows/wide.h"

#include "base/characters.h"

namespace tarnvale {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHigh(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLow(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

// What a text begins with, half a pair included.
Character FirstOf(std::string_view text) {
  const Character first = FirstCharacter(text);
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (first.bytes > 0 || text.size() < 3 || byte(0) != 0xED || byte(1) < 0xA0 || byte(1) > 0xBF ||
      (byte(2) & 0xC0U) != 0x80) {
    return first;
  }
  return {0xD000 | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU), 3};
}

}  // namespace

std::wstring Wide(std::string_view text) {
  std::wstring wide;
  wide.reserve(text.size());
  while (!text.empty()) {
    const Character first = FirstOf(text);
    const char32_t value = first.bytes == 0 ? kReplacement : first.value;
    if (value >= 0x10000) {
      wide += static_cast<wchar_t>(0xD800 + ((value - 0x10000) >> 10U));
      wide += static_cast<wchar_t>(0xDC00 + ((value - 0x10000) & 0x3FFU));
    } else {
      wide += static_cast<wchar_t>(value);
    }
    text.remove_prefix(first.bytes == 0 ? 1 : first.bytes);
  }
  return wide;
}

std::string Narrow(std::wstring_view text) {
  std::string narrow;
  narrow.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t value = text[i];
    if (IsHigh(value) && i + 1 < text.size() && IsLow(text[i + 1])) {
      value = 0x10000 + ((value - 0xD800) << 10U) + (text[++i] - 0xDC00U);
    }
    AppendCharacter(narrow, value);
  }
  return narrow;
}

}  // namespace tarnvale
