#include "codec/packed_codes.h"

#include <algorithm>
#include <cassert>

namespace tarnvale {

PackedCodes PackCodes(const CodeTable& codes) {
  PackedCodes packed;
  packed.all_bytes = true;
  for (std::size_t value = 0; value < kSymbols; ++value) {
    const SymbolCode& code = codes[value];
    assert(code.Count <= kMostWordBits);
    CodeWord word = CodeWord{code.Count} << kLengthShift;
    for (std::size_t bit = 0; bit < code.Count; ++bit) word |= CodeWord{code.Data[bit]} << bit;
    packed.words[value] = word;
    packed.longest = std::max<unsigned>(packed.longest, code.Count);
    if (code.Count != 8) packed.all_bytes = false;
  }
  return packed;
}

PairTable::PairTable(const PackedCodes& codes)
    : words_(std::make_unique_for_overwrite<CodeWord[]>(kSymbols * kSymbols)) {
  CodeWord* at = words_.get();
  for (const CodeWord second : codes.words) {
    for (const CodeWord first : codes.words) {
      const unsigned length = LengthOf(first) + LengthOf(second);
      *at++ = length <= kMostWordBits ? (CodeWord{length} << kLengthShift) | BitsOf(first) |
                                            (BitsOf(second) << LengthOf(first))
                                      : CodeWord{kMostWordBits + 1} << kLengthShift;
    }
  }
}

}  // namespace tarnvale
