// Making a stream of an input, in two passes.
//
// The first one counts, as code and checksum need every byte before the first is
// written; counts go to eight tables, so that no byte of a run waits for the one
// before it. The second writes the codes. A code is one word, its bits below and
// its length above, so the words of six bytes can be added up: if the sum of the
// lengths is at most 56, the six are merged pairwise and appended at once, otherwise
// one by one. That is one branch for six bytes, well predicted, and codes of any
// length need no path of their own. From 192 KiB on a table of all pairs of bytes,
// made in 40 microseconds, serves two bytes by each look-up. Where every code has 8
// bits, a byte replaces a byte. A whole encoding ran at 1,100 to 1,360 MB/s where one
// that goes bit by bit made 130 to 200.
//
// A long input is cut into segments for several processors. The counts of each give
// the bit at which of the payload its codes begin, so each is packed into its place, but for
// the bytes that it shares with its neighbours: these are put together at the end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "codec/bytes.h"
#include "codec/code_tree.h"
#include "codec/percent_report.h"
#include "platform/workers.h"

namespace tarnvale {

/// Writes the stream of `input` into `stream`, whose memory is used again where
/// it is large enough. Input: below 2^31 bytes. Raises 6 when the payload has
/// 2^31 bits or more; `stream` is then undefined. The bytes are the same whatever
/// `workers` lend.
void EncodeStream(std::span<const std::uint8_t> input, ByteBuffer& stream, PercentReport& report,
                  Workers& workers);

/// A code as one word: its bits from bit 0 up, its length from bit 56 up. Words
/// can be added up: the sum holds the sum of the lengths, right as long as that
/// stays below 256.
using CodeWord = std::uint64_t;

inline constexpr unsigned kLengthShift = 56;
/// Most bits that fit below the length.
inline constexpr unsigned kMostWordBits = 56;

inline unsigned LengthOf(CodeWord word) {
  return static_cast<unsigned>(word >> kLengthShift);
}
inline std::uint64_t BitsOf(CodeWord word) {
  return word & ((std::uint64_t{1} << kLengthShift) - 1);
}

/// What all of an input's codes come to.
struct PackedCodes {
  std::array<CodeWord, kSymbols> words{};  ///< 0 for a value without a code
  unsigned longest = 0;
  /// Every length is 8.
  bool all_bytes = false;
};

/// Takes codes of up to 56 bits, which no input of less than 2^31 bytes exceeds.
PackedCodes PackCodes(const CodeTable& codes);

/// One word for each pair of byte values, the first in the low byte of the
/// index, its code first. A pair of more than 56 bits has the length 57 and no
/// bits.
class PairTable {
 public:
  explicit PairTable(const PackedCodes& codes);
  const CodeWord* Words() const { return words_.get(); }

 private:
  std::unique_ptr<CodeWord[]> words_;
};

/// Packs several stretches of one input into one bit field. Writes whole words:
/// up to 8 bytes behind the field's end are overwritten with anything.
class PayloadPacker {
 public:
  /// The whole input's figures decide which way is the fastest.
  struct Size {
    std::size_t input_bytes = 0;
    std::size_t payload_bits = 0;
  };

  /// `codes` must outlive it.
  PayloadPacker(const PackedCodes& codes, const Size& size, std::uint8_t* to);

  void Add(std::span<const std::uint8_t> bytes);
  /// Writes a last partial byte; returns the end of the field.
  std::uint8_t* Finish();

  /// The bits of a segment in the bytes that it may share with its neighbours, at their
  /// places in those bytes.
  struct Edges {
    std::uint8_t first = 0;
    std::uint8_t last = 0;
  };
  /// Least length of such a segment, in bytes of the input.
  static constexpr std::size_t kLeastSegment = 1024;

  /// Packs a segment, whose codes begin at `first_bit` of the field `to`. Writes no byte
  /// that it may share, and nothing outside its own; uses nothing of what was added.
  Edges PackSegment(std::span<const std::uint8_t> bytes, std::uint8_t* to,
                    std::size_t first_bit) const;

 private:
  /// Fewer than 8 bits that wait for their byte, and where it will stand.
  struct Cursor {
    std::uint64_t waiting = 0;
    unsigned count = 0;
    std::uint8_t* to = nullptr;

    void Append(std::uint64_t bits, unsigned length);
  };

  void AddBytes(std::span<const std::uint8_t> bytes);
  template <unsigned kPairs>
  void AddPairs(std::span<const std::uint8_t> bytes);
  void AddSixes(std::span<const std::uint8_t> bytes);
  void AddSingly(Cursor& cursor, const std::uint8_t* from, const std::uint8_t* end) const;

  const PackedCodes& codes_;
  std::shared_ptr<const PairTable> pairs_;
  bool four_pairs_fit_ = false;
  Cursor cursor_;
};

}  // namespace tarnvale
