#include "ui/masked_text.h"

#include <algorithm>
#include <utility>

#include "base/characters.h"

namespace tarnvale {
namespace {

constexpr char kPlace = '#';
constexpr char kEmpty = '0';

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

std::string BlankMask(std::string mask) {
  std::replace(mask.begin(), mask.end(), kPlace, kEmpty);
  return mask;
}

// The first place for a digit at or behind `from`; the mask's length for none.
std::size_t MaskedText::PlaceFrom(std::size_t from) const {
  return std::min(mask.find(kPlace, from), mask.size());
}

void MaskedText::Clear(std::size_t from, std::size_t to) {
  to = std::min(to, text.size());
  for (std::size_t at = PlaceFrom(from); at < to; at = PlaceFrom(at + 1)) text[at] = kEmpty;
}

void MaskedText::Overwrite(std::size_t from, std::string_view typed) {
  for (const char c : typed) {
    if (!IsDigit(c)) continue;
    from = PlaceFrom(from);
    if (from >= text.size()) break;
    text[from++] = c;
  }
  caret = PlaceFrom(from);
}

void MaskedText::Type(std::string_view typed) {
  const std::size_t from = caret;
  const bool is_literal = CountCharacters(typed) == 1 && !IsDigit(typed[0]);
  const std::size_t literal = mask.find(typed, from);
  if (is_literal && (literal == std::string::npos || typed[0] == kPlace)) return;
  if (text.size() != mask.size()) {
    const std::string other = std::exchange(text, BlankMask(mask));
    Overwrite(0, other);
  }
  Clear(from, from + selected);
  selected = 0;
  if (is_literal) {
    caret = literal + typed.size();
  } else {
    Overwrite(from, typed);
  }
}

void MaskedText::Erase() {
  Clear(caret, selected > 0 ? caret + selected : PlaceFrom(caret) + 1);
  selected = 0;
}

void MaskedText::EraseBack() {
  if (selected > 0) return Erase();
  const std::size_t place = caret == 0 ? std::string::npos : mask.rfind(kPlace, caret - 1);
  if (place == std::string::npos) return;
  Clear(place, place + 1);
  caret = place;
}

}  // namespace tarnvale
