// The fast decoder's tables.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "codec/code_reader.h"

namespace tarnvale {

/// What the next bits of a stream decode to. Serves complete trees with codes
/// of up to kLongestCode bits.
class DecodingTables {
 public:
  /// Bits that one look-up sees.
  static constexpr unsigned kIndexBits = 12;
  static constexpr std::size_t kEntries = std::size_t{1} << kIndexBits;
  /// Symbols that one entry can hold.
  static constexpr unsigned kMostSymbols = 6;
  /// A window of 57 bits always holds one.
  static constexpr unsigned kLongestCode = 56;

  struct Symbol {
    std::uint8_t value = 0;
    std::uint8_t length = 0;  ///< bits
  };

  explicit DecodingTables(const CodeTable& codes);

  /// Whether these tables can serve such codes at all.
  static bool CanServe(const CodeTable& codes);

  /// By the next 12 bits: bits used (bits 0 to 7), number of symbols (8 to 15),
  /// and the symbols from bit 16 up. 0 where the first code is longer.
  const std::uint64_t* Entries() const { return entries_.data(); }

  /// The one symbol that a window of at least 56 bits begins with.
  Symbol First(std::uint64_t window) const {
    const Symbol symbol = first_[window & (kEntries - 1)];
    return symbol.length != 0 ? symbol : Long(window);
  }

  /// As First, for a window that begins with a code of more than 12 bits.
  Symbol Long(std::uint64_t window) const;

  unsigned ShortestCode() const { return shortest_; }

 private:
  // The codes that begin with one index: what the bits behind it decode to.
  struct LongCodes {
    unsigned bits = 0;  // that the sub-table sees
    std::vector<Symbol> symbols;
  };

  void FillFirst(const CodeTable& codes);
  void FillEntries();
  void FillLong(const CodeTable& codes);

  std::array<std::uint64_t, kEntries> entries_{};
  std::array<Symbol, kEntries> first_{};
  std::array<std::uint16_t, kEntries> long_index_{};
  std::vector<LongCodes> long_codes_;
  // For codes beyond a sub-table.
  DecodingTree tree_;
  unsigned shortest_ = kLongestCode;
};

}  // namespace tarnvale
