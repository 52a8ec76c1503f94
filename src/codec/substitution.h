// Replacing each byte by another one: the code when every code has 8 bits.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "codec/byte_order.h"

namespace tarnvale {

/// Writes bytes.size() bytes to `to`.
inline void SubstituteBytes(const std::array<std::uint8_t, 256>& substitute,
                            std::span<const std::uint8_t> bytes, std::uint8_t* to) {
  const std::uint8_t* at = bytes.data();
  const std::uint8_t* const end = at + bytes.size();
  for (; end - at >= 8; at += 8, to += 8) {
    const std::uint64_t eight = LoadLittle64(at);
    std::uint64_t replaced = 0;
    for (unsigned i = 0; i < 8; ++i) {
      replaced |= std::uint64_t{substitute[(eight >> (8 * i)) & 0xFFU]} << (8 * i);
    }
    StoreLittle64(to, replaced);
  }
  while (at < end) *to++ = substitute[*at++];
}

}  // namespace tarnvale
