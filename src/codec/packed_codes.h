// The encoder's tables: codes as machine words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "codec/code_tree.h"

namespace tarnvale {

/// A code as one word: its bits from bit 0 up, its length from bit 56 up. Words
/// can be added up: the sum holds the sum of the lengths, right as long as that
/// stays below 256.
using CodeWord = std::uint64_t;

inline constexpr unsigned kLengthShift = 56;
/// Most bits that fit below the length.
inline constexpr unsigned kMostWordBits = 56;

inline unsigned LengthOf(CodeWord word) {
  return static_cast<unsigned>(word >> kLengthShift);
}
inline std::uint64_t BitsOf(CodeWord word) {
  return word & ((std::uint64_t{1} << kLengthShift) - 1);
}

/// What all of an input's codes come to.
struct PackedCodes {
  std::array<CodeWord, kSymbols> words{};  ///< 0 for a value without a code
  unsigned longest = 0;
  /// Every length is 8.
  bool all_bytes = false;
};

/// Takes codes of up to 56 bits, which no input of less than 2^31 bytes exceeds.
PackedCodes PackCodes(const CodeTable& codes);

/// One word for each pair of byte values, the first in the low byte of the
/// index, its code first. A pair of more than 56 bits has the length 57 and no
/// bits.
class PairTable {
 public:
  explicit PairTable(const PackedCodes& codes);
  const CodeWord* Words() const { return words_.get(); }

 private:
  std::unique_ptr<CodeWord[]> words_;
};

}  // namespace tarnvale
