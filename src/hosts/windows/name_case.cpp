#include "hosts/windows/name_case.h"

#include <windows.h>

#include "base/characters.h"

namespace tarnvale {
namespace {

// By way of the capital, as media compare names. Nothing becomes a letter of ASCII: a
// dotless i is no i.
char32_t Folded(char32_t letter) {
  auto unit = static_cast<wchar_t>(letter);
  if (letter > 0xFFFF) return letter;
  ::CharUpperBuffW(&unit, 1);
  ::CharLowerBuffW(&unit, 1);
  return letter >= 0x80 && unit < 0x80 ? letter : unit;
}

}  // namespace

std::string FoldCase(std::string_view name) {
  return WithEachCharacter(name, &Folded);
}

}  // namespace tarnvale
