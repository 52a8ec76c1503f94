// Captions: "&" marks the next character as access key, "&&" shows one "&".
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace tarnvale {

struct CaptionText {
  std::string shown;               ///< without marks
  std::optional<std::size_t> key;  ///< where its access key begins in that
};
CaptionText ReadCaption(const std::string& caption);

/// The caption as it is seen, without marks.
std::string ShownCaption(const std::string& caption);

/// The character behind the first mark, ASCII letters in lower case; 0 when
/// there is none.
char32_t AccessKeyOf(const std::string& caption);

}  // namespace tarnvale
