#include "ui/caption_text.h"

#include <string_view>

#include "base/characters.h"
#include "base/text.h"

namespace tarnvale {
namespace {

// A byte that is no UTF-8 stands for itself.
char32_t CharacterAt(std::string_view text, std::size_t at) {
  const Character first = FirstCharacter(text.substr(at));
  return first.bytes == 0 ? static_cast<unsigned char>(text[at]) : first.value;
}

}  // namespace

CaptionText ReadCaption(const std::string& caption) {
  CaptionText text;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&') {
      if (++i == caption.size()) break;
      if (caption[i] != '&' && !text.key) text.key = text.shown.size();
    }
    text.shown += caption[i];
  }
  return text;
}

std::string ShownCaption(const std::string& caption) {
  return ReadCaption(caption).shown;
}

char32_t AccessKeyOf(const std::string& caption) {
  const CaptionText text = ReadCaption(caption);
  return text.key ? InLowerCase(CharacterAt(text.shown, *text.key)) : U'\0';
}

}  // namespace tarnvale
