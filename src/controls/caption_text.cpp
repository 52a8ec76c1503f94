#include "controls/caption_text.h"

#include <cstddef>
#include <cstdint>

namespace tarnvale {
namespace {

// One character of UTF-8. Bytes that are none stand for themselves.
char32_t CharacterAt(const std::string& text, std::size_t at) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<std::uint8_t>(text[i]) : std::uint8_t{0};
  };
  const std::uint8_t lead = byte(at);
  int following = 0;
  char32_t value = lead;
  if (lead >= 0xF0) {
    following = 3;
    value = lead & 0x07U;
  } else if (lead >= 0xE0) {
    following = 2;
    value = lead & 0x0FU;
  } else if (lead >= 0xC0) {
    following = 1;
    value = lead & 0x1FU;
  }
  for (int i = 1; i <= following; ++i) {
    const std::uint8_t next = byte(at + static_cast<std::size_t>(i));
    if ((next & 0xC0U) != 0x80U) return lead;
    value = value << 6U | (next & 0x3FU);
  }
  return value;
}

char32_t InLowerCase(char32_t c) {
  return c >= U'A' && c <= U'Z' ? c - U'A' + U'a' : c;
}

}  // namespace

std::string ShownCaption(const std::string& caption) {
  std::string shown;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && ++i == caption.size()) break;
    shown += caption[i];
  }
  return shown;
}

char32_t AccessKeyOf(const std::string& caption) {
  for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != '&') continue;
    ++i;
    if (caption[i] != '&') return InLowerCase(CharacterAt(caption, i));
  }
  return 0;
}

}  // namespace tarnvale
