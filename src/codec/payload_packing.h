// Writing the codes of an input one after the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "codec/packed_codes.h"

namespace tarnvale {

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
  std::optional<PairTable> pairs_;
  bool four_pairs_fit_ = false;
  Cursor cursor_;
};

}  // namespace tarnvale
