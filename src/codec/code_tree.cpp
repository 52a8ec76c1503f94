#include "codec/code_tree.h"

#include <algorithm>
#include <cstring>

#include "base/numbers.h"
#include "codec/bytes.h"

namespace tarnvale {

void SymbolCounter::Add(std::span<const std::uint8_t> bytes) {
  const std::uint8_t* at = bytes.data();
  const std::uint8_t* const end = at + bytes.size();
  auto& t = tables_;
  while (end - at >= 16) {
    const std::uint64_t a = LoadLittle64(at);
    const std::uint64_t b = LoadLittle64(at + 8);
    at += 16;
    for (unsigned i = 0; i < 8; ++i) ++t[i][(a >> (8 * i)) & 0xFFU];
    for (unsigned i = 0; i < 8; ++i) ++t[i][(b >> (8 * i)) & 0xFFU];
  }
  while (at < end) ++t[0][*at++];
}

SymbolCounts SymbolCounter::Sum() const {
  SymbolCounts sum{};
  for (const auto& table : tables_) {
    for (std::size_t value = 0; value < kSymbols; ++value) sum[value] += table[value];
  }
  return sum;
}

std::uint8_t ChecksumOf(const SymbolCounts& counts) {
  unsigned checksum = 0;
  for (unsigned value = 0; value < kSymbols; ++value) {
    if ((counts[value] & 1) != 0) checksum ^= value;
  }
  return static_cast<std::uint8_t>(checksum);
}

std::uint8_t ChecksumOf(std::span<const std::uint8_t> bytes) {
  const std::uint8_t* at = bytes.data();
  const std::uint8_t* const end = at + bytes.size();
  std::array<std::uint64_t, 4> words{};
  while (end - at >= 32) {
    for (unsigned i = 0; i < 4; ++i) {
      std::uint64_t word = 0;
      std::memcpy(&word, at + 8 * i, sizeof(word));
      words[i] ^= word;
    }
    at += 32;
  }
  std::uint64_t word = words[0] ^ words[1] ^ words[2] ^ words[3];
  while (at < end) word ^= *at++;
  for (unsigned shift = 32; shift >= 8; shift /= 2) word ^= word >> shift;
  return static_cast<std::uint8_t>(word & 0xFFU);
}

namespace {

// Nodes without a parent, in the order of their indexes.
struct OpenNodes {
  std::array<std::int16_t, kSymbols> index{};
  std::size_t count = 0;

  void Remove(std::size_t a, std::size_t b) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
      if (i != a && i != b) index[kept++] = index[i];
    }
    count = kept;
  }
};

// The two candidates of one scan: positions among the open nodes.
struct Candidates {
  std::size_t first = 0;
  std::size_t second = 1;
};

// Required: the two slots and the strict comparisons are the format's tie-break.
// A node of equal weight displaces nothing, the heavier candidate is the one
// displaced (the first when both weigh the same), and which slot the scan leaves
// a node in decides between left and right.
Candidates FindCandidates(const OpenNodes& open, const NodeTable& nodes) {
  const auto weight = [&](std::size_t i) {
    return nodes[static_cast<std::size_t>(open.index[i])].Weight;
  };
  Candidates found;
  std::int32_t w1 = weight(0);
  std::int32_t w2 = weight(1);
  for (std::size_t i = 2; i < open.count; ++i) {
    const std::int32_t w = weight(i);
    if (w >= w1 && w >= w2) continue;
    if (w1 >= w2) {
      found.first = i;
      w1 = w;
    } else {
      found.second = i;
      w2 = w;
    }
  }
  return found;
}

}  // namespace

int BuildTree(const SymbolCounts& counts, NodeTable& nodes) {
  std::size_t made = 0;
  OpenNodes open;
  for (std::size_t value = 0; value < kSymbols; ++value) {
    if (counts[value] <= 0) continue;
    nodes[made] = HuffmanNode{.Value = static_cast<std::int16_t>(value), .Weight = counts[value]};
    open.index[open.count++] = static_cast<std::int16_t>(made++);
  }
  while (open.count > 1) {
    const Candidates found = FindCandidates(open, nodes);
    const std::int16_t left = open.index[found.first];
    const std::int16_t right = open.index[found.second];
    HuffmanNode& left_node = nodes[static_cast<std::size_t>(left)];
    HuffmanNode& right_node = nodes[static_cast<std::size_t>(right)];
    const auto parent = static_cast<std::int16_t>(made);
    nodes[made++] = HuffmanNode{
        .RightNode = right, .LeftNode = left, .Weight = left_node.Weight + right_node.Weight};
    left_node.ParentNode = right_node.ParentNode = parent;
    open.Remove(found.first, found.second);
    open.index[open.count++] = parent;
  }
  return static_cast<int>(made);
}

void CreateBitSequences(const NodeTable& nodes, int node, const SymbolCode& code,
                        CodeTable& codes) {
  const HuffmanNode& at = nodes[static_cast<std::size_t>(node)];
  if (at.Value > -1) {
    codes[static_cast<std::size_t>(at.Value)] = code;
    return;
  }
  SymbolCode longer = code;
  ++longer.Count;
  CreateBitSequences(nodes, at.LeftNode, longer, codes);
  longer.Data[code.Count] = 1;
  CreateBitSequences(nodes, at.RightNode, longer, codes);
}

std::int32_t PayloadBits(const SymbolCounts& counts, const CodeTable& codes) {
  std::int32_t bits = 0;
  for (std::size_t value = 0; value < kSymbols; ++value) {
    if (counts[value] > 0) bits = Add32(bits, Multiply32(codes[value].Count, counts[value]));
  }
  return bits;
}

}  // namespace tarnvale
