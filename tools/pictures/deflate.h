// The part of the deflate format that the pictures need: one block of fixed
// codes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tarnvale {

/// Packs bytes as one block of fixed codes. Repeats are looked for at the given
/// distances only (1 to 32768), which is where pictures of drawn things have
/// them: one pixel back and one row back.
std::vector<std::uint8_t> DeflateFixed(const std::vector<std::uint8_t>& bytes,
                                       const std::vector<std::size_t>& distances);

/// Unpacks one block of fixed codes; none for anything else or for a stream that
/// was cut or damaged.
std::optional<std::vector<std::uint8_t>> InflateFixed(const std::uint8_t* packed, std::size_t size);

}  // namespace tarnvale
