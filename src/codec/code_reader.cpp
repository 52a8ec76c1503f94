#include "codec/code_reader.h"

#include "base/failure.h"
#include "codec/byte_order.h"
#include "codec/huffman_stream.h"

namespace tarnvale {
namespace {

void Require(bool inside) {
  if (!inside) throw ProgramError(kSubscriptOutOfRange);
}

std::uint8_t ByteAt(std::span<const std::uint8_t> stream, std::size_t offset) {
  Require(offset < stream.size());
  return stream[offset];
}

// Reads the lengths; returns the offset behind the table.
std::size_t ReadTable(std::span<const std::uint8_t> stream, CodeTable& codes) {
  Require(stream.size() >= kTableOffset);
  const int entries = static_cast<std::int16_t>(LoadLittle16(&stream[kSymbolCountOffset]));
  std::size_t at = kTableOffset;
  for (int entry = 0; entry < entries; ++entry, at += kTableEntryBytes) {
    const std::uint8_t symbol = ByteAt(stream, at);
    const std::uint8_t length = ByteAt(stream, at + 1);
    // Chosen: there is no buffer of no entries, as with an empty file.
    Require(length > 0);
    codes[symbol].Count = length;
  }
  return at;
}

}  // namespace

std::int32_t AnnouncedLength(std::span<const std::uint8_t> stream) {
  Require(stream.size() >= kSymbolCountOffset);
  return static_cast<std::int32_t>(LoadLittle32(&stream[kLengthOffset]));
}

void ReadHead(std::span<const std::uint8_t> stream, StreamHead& head) {
  head.result_bytes = AnnouncedLength(stream);
  head.checksum = stream[kChecksumOffset];
  Require(head.result_bytes > 0);
  std::size_t at = ReadTable(stream, head.codes);
  // Required: the byte behind the codes is fetched as soon as the last of them
  // is full, so a stream must go on where they end on a whole byte.
  std::uint8_t current = ByteAt(stream, at);
  unsigned position = 0;
  for (SymbolCode& code : head.codes) {
    for (std::size_t bit = 0; bit < code.Count; ++bit) {
      code.Data[bit] = (current >> position) & 1U;
      if (++position == 8) {
        current = ByteAt(stream, ++at);
        position = 0;
      }
    }
  }
  head.payload_offset = position == 0 ? at : at + 1;
}

DecodingTree::DecodingTree(const CodeTable& codes) {
  NewNode(-1);
  for (std::size_t symbol = 0; symbol < kSymbols; ++symbol) {
    CreateTree(static_cast<int>(symbol), codes[symbol]);
  }
}

std::int16_t DecodingTree::NewNode(std::int16_t parent) {
  Require(static_cast<std::size_t>(count_) < nodes_.size());
  nodes_[static_cast<std::size_t>(count_)].ParentNode = parent;
  return static_cast<std::int16_t>(count_++);
}

// A symbol without a code gives the root a value, at which nothing ever looks.
void DecodingTree::CreateTree(int symbol, const SymbolCode& code) {
  std::int16_t at = 0;
  for (std::size_t bit = 0; bit < code.Count; ++bit) {
    HuffmanNode& node = nodes_[static_cast<std::size_t>(at)];
    std::int16_t& child = code.Data[bit] != 0 ? node.RightNode : node.LeftNode;
    if (child == -1) child = NewNode(at);
    at = child;
  }
  nodes_[static_cast<std::size_t>(at)].Value = static_cast<std::int16_t>(symbol);
}

bool DecodingTree::IsComplete() const {
  for (int i = 0; i < count_; ++i) {
    const HuffmanNode& node = nodes_[static_cast<std::size_t>(i)];
    const bool has_left = node.LeftNode != -1;
    const bool has_right = node.RightNode != -1;
    const bool is_inner = i == 0 || node.Value == -1;
    if (has_left != is_inner || has_right != is_inner) return false;
  }
  return true;
}

}  // namespace tarnvale
