// Writing the codes of an input one after the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "compression/packed_codes.h"

namespace tarnvale {

/// Packs several stretches of one input into one bit field. Writes whole words:
/// up to 8 bytes behind the field's end are overwritten with anything.
class PayloadPacker {
 public:
  /// `codes` must outlive it; `input_bytes` of the whole input decides which
  /// tables are worth their making.
  PayloadPacker(const PackedCodes& codes, std::size_t input_bytes, std::uint8_t* to);

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
  void AddPairs(std::span<const std::uint8_t> bytes);
  void AddSixes(std::span<const std::uint8_t> bytes);
  void AddSingly(Cursor& cursor, const std::uint8_t* from, const std::uint8_t* end) const;

  const PackedCodes& codes_;
  std::optional<PairTable> pairs_;
  Cursor cursor_;
};

}  // namespace tarnvale
