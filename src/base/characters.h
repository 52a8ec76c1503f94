// Lengths of texts in characters.
//
// A text is bytes, nearly always UTF-8. A code point is one character, and so is
// each byte that belongs to none.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnvale {

/// A code point and its bytes; none of them for a byte that is no UTF-8, which
/// overlong forms, surrogates and numbers above 10FFFF aren't either.
struct Character {
  char32_t value = 0;
  std::size_t bytes = 0;
};

/// What a text that isn't empty begins with.
Character FirstCharacter(std::string_view text);

/// Bytes of the character that `text` begins with; 0 for an empty text.
std::size_t FirstCharacterBytes(std::string_view text);

/// Adds a code point as UTF-8; a surrogate likewise, in three bytes.
void AppendCharacter(std::string& text, char32_t character);

/// A text with `change` applied to each of its code points; bytes of none stay.
template <class Change>
std::string WithEachCharacter(std::string_view text, Change&& change) {
  std::string changed;
  changed.reserve(text.size());
  while (!text.empty()) {
    const Character first = FirstCharacter(text);
    if (first.bytes == 0) {
      changed += text.front();
    } else {
      AppendCharacter(changed, change(first.value));
    }
    text.remove_prefix(FirstCharacterBytes(text));
  }
  return changed;
}

std::size_t CountCharacters(std::string_view text);

/// The first `count` characters; all of a text that has no more.
std::string_view FirstCharacters(std::string_view text, std::size_t count);

/// The first `bytes` bytes, less a character that doesn't end among them; all of a text that
/// has fewer.
std::string_view WholeCharacters(std::string_view text, std::size_t bytes);

/// All but the last `count` characters; empty for a text that has no more.
std::string_view WithoutLastCharacters(std::string_view text, std::size_t count);

/// `text` with NULs behind it, `count` characters in all; a text that has as many
/// stays.
std::string PaddedWithNuls(std::string text, std::size_t count);

}  // namespace tarnvale
