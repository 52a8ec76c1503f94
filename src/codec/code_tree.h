// The encoder's code tree.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "codec/symbol_counts.h"

namespace tarnvale {

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
