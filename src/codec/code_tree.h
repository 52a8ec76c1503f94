// The code of an input: how often each byte occurs, the tree that follows, each
// byte's bits. Which of two equal weights is merged first is part of the format,
// as two encoders must make one stream: BuildTree says how.
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

/// One node of a code tree; -1 stands for none.
struct HuffmanNode {
  std::int16_t ParentNode = -1;
  std::int16_t RightNode = -1;  ///< the child reached by bit 1
  std::int16_t LeftNode = -1;   ///< the child reached by bit 0
  std::int16_t Value = -1;      ///< 0 to 255 at a leaf
  std::int32_t Weight = 0;      ///< occurrences; the encoder's only
};

/// The nodes of one tree, in the order in which they were made.
using NodeTable = std::array<HuffmanNode, 512>;

/// The code of one byte value. `Data[j]` is its bit j, 0 or 1, from the root to
/// the leaf.
struct SymbolCode {
  std::uint8_t Count = 0;  ///< number of bits
  std::array<std::uint8_t, 256> Data{};
};

using CodeTable = std::array<SymbolCode, kSymbols>;

/// Makes a leaf for each value that occurs and merges until one node is left.
/// Returns the number of nodes; the last one is the root.
int BuildTree(const SymbolCounts& counts, NodeTable& nodes);

/// Gives each leaf below `node` its code, which begins with `code`.
void CreateBitSequences(const NodeTable& nodes, int node, const SymbolCode& code, CodeTable& codes);

/// Bits of the payload: occurrences times code length over all values. Raises 6
/// when a product or the sum doesn't fit a signed 32-bit number.
std::int32_t PayloadBits(const SymbolCounts& counts, const CodeTable& codes);

}  // namespace tarnvale
