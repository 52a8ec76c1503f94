#include "kit/caption_text.h"

#include <cstddef>
#include <string_view>

#include "base/characters.h"

namespace tarnvale {
namespace {

// A byte that is no UTF-8 stands for itself.
char32_t CharacterAt(std::string_view text, std::size_t at) {
  const Character first = FirstCharacter(text.substr(at));
  return first.bytes == 0 ? static_cast<unsigned char>(text[at]) : first.value;
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
