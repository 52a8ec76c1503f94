// Fields with a mask: "#" stands for one digit, everything else for itself. A place
// that isn't filled is a "0".
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnvale {

/// The mask with nothing typed: "00:00" for "##:##".
std::string BlankMask(std::string mask);

/// The text of such a field while the user edits it: digits overwrite one another,
/// and all of the mask always shows. Positions are bytes. What is selected begins at
/// the caret.
struct MaskedText {
  std::string mask;
  std::string text;
  std::size_t caret = 0;
  std::size_t selected = 0;

  /// Overwrites places from the caret on by the digits of `typed`, which may be any
  /// text. A character of the mask's own moves behind itself; any other single one
  /// changes nothing.
  void Type(std::string_view typed);
  /// Empties what is selected, or the next place.
  void Erase();
  /// Empties what is selected, or the place before the caret.
  void EraseBack();

  bool operator==(const MaskedText&) const = default;

 private:
  std::size_t PlaceFrom(std::size_t from) const;
  void Clear(std::size_t from, std::size_t to);
  void Overwrite(std::size_t from, std::string_view typed);
};

}  // namespace tarnvale
