#include "base/characters.h"

#include <algorithm>
#include <cstdint>

namespace tarnvale {

Character FirstCharacter(std::string_view text) {
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

std::size_t FirstCharacterBytes(std::string_view text) {
  return text.empty() ? 0 : std::max<std::size_t>(FirstCharacter(text).bytes, 1);
}

void AppendCharacter(std::string& text, char32_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
    return;
  }
  const unsigned more = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  text += static_cast<char>((0xF00U >> (more + 1) & 0xFFU) | character >> (6 * more));
  for (unsigned i = more; i-- > 0;)
    text += static_cast<char>(0x80U | (character >> (6 * i) & 0x3FU));
}

std::size_t CountCharacters(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); ++count) text.remove_prefix(FirstCharacterBytes(text));
  return count;
}

std::string_view FirstCharacters(std::string_view text, std::size_t count) {
  std::size_t bytes = 0;
  for (; count > 0 && bytes < text.size(); --count) {
    bytes += FirstCharacterBytes(text.substr(bytes));
  }
  return text.substr(0, bytes);
}

std::string_view WholeCharacters(std::string_view text, std::size_t bytes) {
  if (text.size() < bytes) return text;
  text = text.substr(0, bytes);
  for (std::size_t back = 1; back <= std::min<std::size_t>(bytes, 3); ++back) {
    const auto byte = static_cast<std::uint8_t>(text[bytes - back]);
    if (byte >= 0x80 && byte < 0xC0) continue;
    const bool is_cut = byte >= (back == 3 ? 0xF0 : back == 2 ? 0xE0 : 0xC0);
    return is_cut ? text.substr(0, bytes - back) : text;
  }
  return text;
}

std::string_view WithoutLastCharacters(std::string_view text, std::size_t count) {
  const std::size_t all = CountCharacters(text);
  return FirstCharacters(text, all - std::min(all, count));
}

std::string PaddedWithNuls(std::string text, std::size_t count) {
  const std::size_t present = CountCharacters(text);
  return text.append(count - std::min(count, present), '\0');
}

}  // namespace tarnvale
