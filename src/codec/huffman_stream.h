// The compressed stream: where its fields stand.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarnvale {

inline constexpr std::array<std::uint8_t, 4> kStoredMark{'H', 'E', '0', '\r'};
inline constexpr std::array<std::uint8_t, 4> kCompressedMark{'H', 'E', '3', '\r'};

inline constexpr std::size_t kMarkBytes = 4;
inline constexpr std::size_t kChecksumOffset = 4;
inline constexpr std::size_t kLengthOffset = 5;
inline constexpr std::size_t kSymbolCountOffset = 9;
inline constexpr std::size_t kTableOffset = 11;
inline constexpr std::size_t kTableEntryBytes = 2;

}  // namespace tarnvale
