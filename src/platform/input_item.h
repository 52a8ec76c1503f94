// Delimited items of a text, for hosts' OpenFiles::InputItem.
#pragma once

#include <string>

namespace tarnvale {

/// Takes one item byte by byte: leading blanks are skipped; it ends at the first
/// comma or line end, or, begun with a double quote, at the closing one. What
/// is between a closing quote and the next comma or line end is dropped.
class InputItemScanner {
 public:
  /// True while the item isn't complete. The last byte that is fed belongs to
  /// the item, delimiter included; of a line end of two bytes only the first.
  bool Feed(char byte);

  /// Whether the item's delimiter was a carriage return: a line feed right
  /// behind it belongs to it as well.
  bool EndedInReturn() const { return ended_in_return_; }
  /// At the end of the file: whether any byte of an item had come.
  bool HasBegun() const { return state_ != State::kLeading; }
  const std::string& Item() const { return item_; }

 private:
  enum class State { kLeading, kPlain, kQuoted, kBehindQuote, kDone };

  std::string item_;
  State state_ = State::kLeading;
  bool ended_in_return_ = false;
};

}  // namespace tarnvale
