#include "hosts/linux/name_case.h"

#include <clocale>
#include <cwctype>

#include "base/characters.h"

namespace tarnvale {
namespace {

// The letters of all alphabets, whatever the user's own locale is. Without it
// (no system of today) the letters beyond z have no case.
locale_t AllLetters() {
  static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// By way of the capital, which several small letters can share. Nothing becomes a
// letter of ASCII: a dotless i is no i.
wint_t Folded(wint_t c) {
  const wint_t folded = ::towlower_l(::towupper_l(c, AllLetters()), AllLetters());
  return folded < 0x80 ? c : folded;
}

bool IsPlain(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}

void Append(std::string& text, wint_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
    return;
  }
  const int more = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  text += static_cast<char>((0xF00U >> static_cast<unsigned>(more + 1) & 0xFFU) |
                            character >> static_cast<unsigned>(6 * more));
  for (int i = more - 1; i >= 0; --i) {
    text += static_cast<char>(0x80U | (character >> static_cast<unsigned>(6 * i) & 0x3FU));
  }
}

// Bytes that are no text stay.
template <class Change>
std::string WithLetters(std::string_view name, Change&& change) {
  std::string changed;
  changed.reserve(name.size());
  while (!name.empty()) {
    const Character first = FirstCharacter(name);
    if (first.bytes == 0) {
      changed += name.front();
    } else {
      Append(changed, change(static_cast<wint_t>(first.value)));
    }
    name.remove_prefix(FirstCharacterBytes(name));
  }
  return changed;
}

}  // namespace

std::string FoldCase(std::string_view name) {
  std::string folded(name);
  bool plain = true;
  for (char& c : folded) {
    c = Lower(c);
    plain = plain && IsPlain(c);
  }
  if (plain || AllLetters() == nullptr) return folded;
  return WithLetters(folded, [](wint_t c) { return Folded(c); });
}

}  // namespace tarnvale
