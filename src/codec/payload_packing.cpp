#include "codec/payload_packing.h"

#include "codec/byte_order.h"
#include "codec/substitution.h"

namespace tarnvale {
namespace {

// Below this the table of pairs costs more than it saves.
constexpr std::size_t kWorthPairs = std::size_t{192} * 1024;
// The sum of six lengths must stay below 256.
constexpr unsigned kLongestInGroups = 42;

}  // namespace

PayloadPacker::PayloadPacker(const PackedCodes& codes, const Size& size, std::uint8_t* to)
    : codes_(codes), cursor_{.to = to} {
  if (size.input_bytes >= kWorthPairs && !codes.all_bytes) pairs_.emplace(codes);
  // Eight symbols of 5 bits on the average seldom have more than 56.
  four_pairs_fit_ = size.payload_bits <= 5 * size.input_bytes;
}

// At most 57 bits.
inline void PayloadPacker::Cursor::Append(std::uint64_t bits, unsigned length) {
  waiting |= bits << count;
  count += length;
  StoreLittle64(to, waiting);
  to += count >> 3U;
  waiting >>= count & ~7U;
  count &= 7U;
}

void PayloadPacker::Add(std::span<const std::uint8_t> bytes) {
  if (codes_.all_bytes) {
    AddBytes(bytes);
  } else if (codes_.longest > kLongestInGroups) {
    AddSingly(cursor_, bytes.data(), bytes.data() + bytes.size());
  } else if (pairs_) {
    four_pairs_fit_ ? AddPairs<4>(bytes) : AddPairs<3>(bytes);
  } else {
    AddSixes(bytes);
  }
}

std::uint8_t* PayloadPacker::Finish() {
  if (cursor_.count > 0) {
    *cursor_.to++ = static_cast<std::uint8_t>(cursor_.waiting);
    cursor_.waiting = cursor_.count = 0;
  }
  return cursor_.to;
}

// With codes of 8 bits each, one byte stands for one byte.
void PayloadPacker::AddBytes(std::span<const std::uint8_t> bytes) {
  std::array<std::uint8_t, kSymbols> substitute{};
  for (std::size_t value = 0; value < kSymbols; ++value) {
    substitute[value] = static_cast<std::uint8_t>(codes_.words[value] & 0xFFU);
  }
  SubstituteBytes(substitute, bytes, cursor_.to);
  cursor_.to += bytes.size();
}

void PayloadPacker::AddSingly(Cursor& cursor, const std::uint8_t* from,
                              const std::uint8_t* end) const {
  for (; from < end; ++from) {
    const CodeWord word = codes_.words[*from];
    cursor.Append(BitsOf(word), LengthOf(word));
  }
}

// Three or four pairs at a time.
template <unsigned kPairs>
void PayloadPacker::AddPairs(std::span<const std::uint8_t> bytes) {
  const std::uint8_t* at = bytes.data();
  const std::uint8_t* const end = at + bytes.size();
  const CodeWord* const pairs = pairs_->Words();
  Cursor cursor = cursor_;
  while (end - at >= 8) {
    const std::uint64_t symbols = LoadLittle64(at);
    const CodeWord a = pairs[symbols & 0xFFFFU];
    const CodeWord b = pairs[(symbols >> 16U) & 0xFFFFU];
    const CodeWord c = pairs[(symbols >> 32U) & 0xFFFFU];
    const CodeWord d = kPairs == 4 ? pairs[symbols >> 48U] : 0;
    const unsigned length = LengthOf(a + b + c + d);
    if (length <= kMostWordBits) [[likely]] {
      // Merged as a tree, so that the halves don't wait for one another.
      const std::uint64_t low = BitsOf(a) | (BitsOf(b) << LengthOf(a));
      const std::uint64_t high = BitsOf(c) | (BitsOf(d) << LengthOf(c));
      cursor.Append(low | (high << LengthOf(a + b)), length);
    } else {
      AddSingly(cursor, at, at + 2 * kPairs);
    }
    at += 2 * kPairs;
  }
  AddSingly(cursor, at, end);
  cursor_ = cursor;
}

void PayloadPacker::AddSixes(std::span<const std::uint8_t> bytes) {
  const std::uint8_t* at = bytes.data();
  const std::uint8_t* const end = at + bytes.size();
  const auto& words = codes_.words;
  Cursor cursor = cursor_;
  while (end - at >= 6) {
    const CodeWord w0 = words[at[0]];
    const CodeWord w1 = words[at[1]];
    const CodeWord w2 = words[at[2]];
    const CodeWord w3 = words[at[3]];
    const CodeWord w4 = words[at[4]];
    const CodeWord w5 = words[at[5]];
    const CodeWord first = w0 + w1;
    const CodeWord second = w2 + w3;
    const unsigned length = LengthOf(first + second + w4 + w5);
    if (length <= kMostWordBits) [[likely]] {
      const std::uint64_t low = BitsOf(w0) | (BitsOf(w1) << LengthOf(w0));
      const std::uint64_t middle = BitsOf(w2) | (BitsOf(w3) << LengthOf(w2));
      const std::uint64_t high = BitsOf(w4) | (BitsOf(w5) << LengthOf(w4));
      const std::uint64_t upper = middle | (high << LengthOf(second));
      cursor.Append(low | (upper << LengthOf(first)), length);
    } else {
      AddSingly(cursor, at, at + 6);
    }
    at += 6;
  }
  AddSingly(cursor, at, end);
  cursor_ = cursor;
}

}  // namespace tarnvale
