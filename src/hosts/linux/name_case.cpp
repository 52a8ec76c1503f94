#include "hosts/linux/name_case.h"

#include <algorithm>
#include <clocale>
#include <cwctype>

#include "base/characters.h"
#include "base/text.h"

namespace tarnvale {
namespace {

// The letters of all alphabets, whatever the user's own locale is. Without it
// (no system of today) the letters beyond z have no case.
locale_t AllLetters() {
  static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
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

}  // namespace

std::string FoldCase(std::string_view name) {
  std::string folded = ToLower(name);
  if (std::all_of(folded.begin(), folded.end(), IsPlain) || AllLetters() == nullptr) return folded;
  return WithEachCharacter(folded, [](char32_t c) { return static_cast<char32_t>(Folded(c)); });
}

}  // namespace tarnvale
