#include "codec/decoding_tables.h"

#include <algorithm>

namespace tarnvale {
namespace {

// Longer codes are walked: so rare are they.
constexpr unsigned kMostSubBits = 9;

std::uint64_t BitsOf(const SymbolCode& code) {
  std::uint64_t bits = 0;
  for (std::size_t bit = 0; bit < code.Count; ++bit) bits |= std::uint64_t{code.Data[bit]} << bit;
  return bits;
}

}  // namespace

bool DecodingTables::CanServe(const CodeTable& codes) {
  return std::all_of(codes.begin(), codes.end(),
                     [](const SymbolCode& code) { return code.Count <= kLongestCode; });
}

DecodingTables::DecodingTables(const CodeTable& codes) : tree_(codes) {
  for (const SymbolCode& code : codes) {
    if (code.Count > 0) shortest_ = std::min<unsigned>(shortest_, code.Count);
  }
  FillFirst(codes);
  FillEntries();
  FillLong(codes);
}

void DecodingTables::FillFirst(const CodeTable& codes) {
  for (std::size_t value = 0; value < kSymbols; ++value) {
    const SymbolCode& code = codes[value];
    if (code.Count == 0 || code.Count > kIndexBits) continue;
    const std::size_t step = std::size_t{1} << code.Count;
    for (std::size_t index = BitsOf(code); index < kEntries; index += step) {
      first_[index] = {static_cast<std::uint8_t>(value), code.Count};
    }
  }
}

void DecodingTables::FillEntries() {
  for (std::size_t index = 0; index < kEntries; ++index) {
    std::uint64_t symbols = 0;
    unsigned count = 0;
    unsigned used = 0;
    while (count < kMostSymbols) {
      const Symbol next = first_[index >> used];
      if (next.length == 0 || used + next.length > kIndexBits) break;
      symbols |= std::uint64_t{next.value} << (16 + 8 * count++);
      used += next.length;
    }
    entries_[index] = symbols | (count << 8U) | used;
  }
}

void DecodingTables::FillLong(const CodeTable& codes) {
  // The longest code of each beginning decides how much its sub-table sees.
  for (const SymbolCode& code : codes) {
    if (code.Count <= kIndexBits) continue;
    std::uint16_t& which = long_index_[BitsOf(code) & (kEntries - 1)];
    if (which == 0) {
      long_codes_.emplace_back();
      which = static_cast<std::uint16_t>(long_codes_.size());
    }
    unsigned& bits = long_codes_[which - 1U].bits;
    bits = std::clamp<unsigned>(code.Count - kIndexBits, bits, kMostSubBits);
  }
  for (LongCodes& sub : long_codes_) sub.symbols.resize(std::size_t{1} << sub.bits);
  for (std::size_t value = 0; value < kSymbols; ++value) {
    const SymbolCode& code = codes[value];
    if (code.Count <= kIndexBits) continue;
    LongCodes& sub = long_codes_[long_index_[BitsOf(code) & (kEntries - 1)] - 1U];
    if (code.Count > kIndexBits + sub.bits) continue;
    const std::size_t step = std::size_t{1} << (code.Count - kIndexBits);
    for (std::size_t at = BitsOf(code) >> kIndexBits; at < sub.symbols.size(); at += step) {
      sub.symbols[at] = {static_cast<std::uint8_t>(value), code.Count};
    }
  }
}

DecodingTables::Symbol DecodingTables::Long(std::uint64_t window) const {
  const LongCodes& sub = long_codes_[long_index_[window & (kEntries - 1)] - 1U];
  const std::size_t rest = (window >> kIndexBits) & (sub.symbols.size() - 1);
  if (sub.symbols[rest].length != 0) return sub.symbols[rest];
  int node = 0;
  std::uint8_t length = 0;
  do {
    node = tree_.Child(node, ((window >> length++) & 1U) != 0);
  } while (tree_.Value(node) < 0);
  return {static_cast<std::uint8_t>(tree_.Value(node)), length};
}

}  // namespace tarnvale
