// The decoder's view of a stream: its head, its codes, its tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "codec/code_tree.h"

namespace tarnvale {

/// The head of a compressed stream with all codes.
struct StreamHead {
  std::uint8_t checksum = 0;
  std::int32_t result_bytes = 0;
  CodeTable codes{};
  std::size_t payload_offset = 0;
};

/// Length of the result that a stream announces. Raises 9 when the stream ends
/// before it.
std::int32_t AnnouncedLength(std::span<const std::uint8_t> stream);

/// Reads everything in front of the payload. Raises 9 when the stream ends
/// before that, or for a code or a result of no length.
void ReadHead(std::span<const std::uint8_t> stream, StreamHead& head);

/// A tree made of codes. Any codes go, prefix codes or not.
class DecodingTree {
 public:
  /// Raises 9 when the codes need more than 512 nodes.
  explicit DecodingTree(const CodeTable& codes);

  /// The child of a node, -1 when it is missing.
  int Child(int node, bool bit) const {
    const HuffmanNode& at = nodes_[static_cast<std::size_t>(node)];
    return bit ? at.RightNode : at.LeftNode;
  }
  /// The byte value at which decoding stops, -1 where it goes on.
  int Value(int node) const { return nodes_[static_cast<std::size_t>(node)].Value; }

  /// Whether any bits lead to a value: two children at each inner node, and no
  /// value above another.
  bool IsComplete() const;

 private:
  void CreateTree(int symbol, const SymbolCode& code);
  std::int16_t NewNode(std::int16_t parent);

  NodeTable nodes_{};
  int count_ = 0;
};

}  // namespace tarnvale
