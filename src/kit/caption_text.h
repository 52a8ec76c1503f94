// Captions: "&" marks the next character as access key, "&&" shows one "&".
#pragma once

#include <string>

namespace tarnvale {

/// The caption as it is seen, without marks.
std::string ShownCaption(const std::string& caption);

/// The character behind the first mark, ASCII letters in lower case; 0 when
/// there is none.
char32_t AccessKeyOf(const std::string& caption);

}  // namespace tarnvale
