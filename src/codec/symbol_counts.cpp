#include "codec/symbol_counts.h"

#include <cstring>

#include "codec/byte_order.h"

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

}  // namespace tarnvale
