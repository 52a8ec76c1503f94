#include "tools/pictures/deflate.h"

#include <algorithm>
#include <array>

namespace tarnvale {
namespace {

constexpr int kEndOfBlock = 256;
constexpr int kFirstLength = 257;
constexpr std::size_t kLongestMatch = 258;
constexpr std::size_t kShortestMatch = 4;

// First value and extra bits of each code, lengths from 257 and distances from 0.
struct Range {
  std::size_t base;
  int extra_bits;
};
constexpr std::array<Range, 29> kLengths = {
    {{3, 0},  {4, 0},  {5, 0},  {6, 0},   {7, 0},   {8, 0},   {9, 0},   {10, 0},  {11, 1}, {13, 1},
     {15, 1}, {17, 1}, {19, 2}, {23, 2},  {27, 2},  {31, 2},  {35, 3},  {43, 3},  {51, 3}, {59, 3},
     {67, 4}, {83, 4}, {99, 4}, {115, 4}, {131, 5}, {163, 5}, {195, 5}, {227, 5}, {258, 0}}};
constexpr std::array<Range, 30> kDistances = {
    {{1, 0},     {2, 0},     {3, 0},     {4, 0},      {5, 1},      {7, 1},
     {9, 2},     {13, 2},    {17, 3},    {25, 3},     {33, 4},     {49, 4},
     {65, 5},    {97, 5},    {129, 6},   {193, 6},    {257, 7},    {385, 7},
     {513, 8},   {769, 8},   {1025, 9},  {1537, 9},   {2049, 10},  {3073, 10},
     {4097, 11}, {6145, 11}, {8193, 12}, {12289, 12}, {16385, 13}, {24577, 13}}};

template <std::size_t N>
std::size_t CodeFor(const std::array<Range, N>& ranges, std::size_t value) {
  std::size_t code = N - 1;
  while (ranges[code].base > value) --code;
  return code;
}

class BitWriter {
 public:
  // Numbers stand in the stream with their lowest bit first.
  void Number(std::uint32_t value, int bits) {
    for (int i = 0; i < bits; ++i) Bit(value >> static_cast<unsigned>(i) & 1U);
  }
  // Huffman codes stand with their highest bit first.
  void Code(std::uint32_t code, int bits) {
    for (int i = bits - 1; i >= 0; --i) Bit(code >> static_cast<unsigned>(i) & 1U);
  }
  // The fixed code of a literal, a length or the end.
  void Symbol(int symbol) {
    const auto s = static_cast<std::uint32_t>(symbol);
    if (symbol < 144) {
      Code(0x30 + s, 8);
    } else if (symbol < 256) {
      Code(0x190 + s - 144, 9);
    } else if (symbol < 280) {
      Code(s - 256, 7);
    } else {
      Code(0xC0 + s - 280, 8);
    }
  }
  std::vector<std::uint8_t> Take() { return std::move(bytes_); }

 private:
  void Bit(std::uint32_t bit) {
    if (used_ == 0) bytes_.push_back(0);
    bytes_.back() = static_cast<std::uint8_t>(bytes_.back() | bit << used_);
    used_ = (used_ + 1) % 8;
  }

  std::vector<std::uint8_t> bytes_;
  unsigned used_ = 0;
};

class BitReader {
 public:
  BitReader(const std::uint8_t* bytes, std::size_t size) : bytes_(bytes), bits_(size * 8) {}

  bool RanOut() const { return at_ > bits_; }
  std::uint32_t Number(int bits) {
    std::uint32_t value = 0;
    for (int i = 0; i < bits; ++i) value |= Bit() << static_cast<unsigned>(i);
    return value;
  }
  std::uint32_t Code(int bits) {
    std::uint32_t value = 0;
    for (int i = 0; i < bits; ++i) value = value << 1U | Bit();
    return value;
  }
  int Symbol() {
    const std::uint32_t seven = Code(7);
    if (seven < 24) return static_cast<int>(seven) + 256;
    const std::uint32_t eight = seven << 1U | Bit();
    if (eight < 0xC0) return static_cast<int>(eight) - 0x30;
    if (eight < 0xC8) return static_cast<int>(eight) - 0xC0 + 280;
    return static_cast<int>(eight << 1U | Bit()) - 0x190 + 144;
  }

 private:
  std::uint32_t Bit() {
    const std::size_t at = at_++;
    if (at >= bits_) return 0;
    return bytes_[at / 8] >> at % 8 & 1U;
  }

  const std::uint8_t* bytes_;
  std::size_t bits_;
  std::size_t at_ = 0;
};

std::size_t MatchLength(const std::vector<std::uint8_t>& bytes, std::size_t at,
                        std::size_t distance) {
  if (distance == 0 || distance > at) return 0;
  const std::size_t limit = std::min(kLongestMatch, bytes.size() - at);
  std::size_t length = 0;
  while (length < limit && bytes[at + length] == bytes[at + length - distance]) ++length;
  return length;
}

void WriteMatch(BitWriter& writer, std::size_t length, std::size_t distance) {
  const std::size_t length_code = CodeFor(kLengths, length);
  writer.Symbol(kFirstLength + static_cast<int>(length_code));
  writer.Number(static_cast<std::uint32_t>(length - kLengths[length_code].base),
                kLengths[length_code].extra_bits);
  const std::size_t distance_code = CodeFor(kDistances, distance);
  writer.Code(static_cast<std::uint32_t>(distance_code), 5);
  writer.Number(static_cast<std::uint32_t>(distance - kDistances[distance_code].base),
                kDistances[distance_code].extra_bits);
}

bool ReadMatch(BitReader& reader, int symbol, std::vector<std::uint8_t>& bytes) {
  const auto length_code = static_cast<std::size_t>(symbol - kFirstLength);
  if (length_code >= kLengths.size()) return false;
  const std::size_t length =
      kLengths[length_code].base + reader.Number(kLengths[length_code].extra_bits);
  const std::size_t distance_code = reader.Code(5);
  if (distance_code >= kDistances.size()) return false;
  const std::size_t distance =
      kDistances[distance_code].base + reader.Number(kDistances[distance_code].extra_bits);
  if (distance > bytes.size()) return false;
  for (std::size_t i = 0; i < length; ++i) bytes.push_back(bytes[bytes.size() - distance]);
  return true;
}

}  // namespace

std::vector<std::uint8_t> DeflateFixed(const std::vector<std::uint8_t>& bytes,
                                       const std::vector<std::size_t>& distances) {
  BitWriter writer;
  writer.Number(1, 1);  // the last block
  writer.Number(1, 2);  // of fixed codes
  for (std::size_t at = 0; at < bytes.size();) {
    std::size_t best = 0;
    std::size_t best_distance = 0;
    for (const std::size_t distance : distances) {
      const std::size_t length = MatchLength(bytes, at, distance);
      if (length > best) {
        best = length;
        best_distance = distance;
      }
    }
    if (best >= kShortestMatch) {
      WriteMatch(writer, best, best_distance);
      at += best;
    } else {
      writer.Symbol(bytes[at++]);
    }
  }
  writer.Symbol(kEndOfBlock);
  return writer.Take();
}

std::optional<std::vector<std::uint8_t>> InflateFixed(const std::uint8_t* packed,
                                                      std::size_t size) {
  BitReader reader(packed, size);
  if (reader.Number(1) != 1 || reader.Number(2) != 1) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  while (!reader.RanOut()) {
    const int symbol = reader.Symbol();
    if (symbol == kEndOfBlock) {
      if (reader.RanOut()) return std::nullopt;
      return bytes;
    }
    if (symbol < kEndOfBlock) {
      bytes.push_back(static_cast<std::uint8_t>(symbol));
    } else if (!ReadMatch(reader, symbol, bytes)) {
      return std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace tarnvale
