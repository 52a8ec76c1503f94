// How often each byte value stands in an input.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tarnvale {

inline constexpr std::size_t kSymbols = 256;

/// Occurrences of the byte values 0 to 255.
using SymbolCounts = std::array<std::int32_t, kSymbols>;

/// Counts several stretches of one input. Each byte of eight has a table of its
/// own: in a run of one value no count waits for the one before it.
class SymbolCounter {
 public:
  void Add(std::span<const std::uint8_t> bytes);
  SymbolCounts Sum() const;

 private:
  std::array<std::array<std::int32_t, kSymbols>, 8> tables_{};
};

/// All bytes of a counted input combined by exclusive or: a value that occurs
/// an even number of times cancels out.
std::uint8_t ChecksumOf(const SymbolCounts& counts);

/// All bytes combined by exclusive or.
std::uint8_t ChecksumOf(std::span<const std::uint8_t> bytes);

}  // namespace tarnvale
