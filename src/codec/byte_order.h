// Little-endian numbers in bytes, on every kind of machine.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace tarnvale {

inline std::uint64_t SwapBytes64(std::uint64_t value) {
  value = ((value & 0x00FF00FF00FF00FFULL) << 8U) | ((value >> 8U) & 0x00FF00FF00FF00FFULL);
  value = ((value & 0x0000FFFF0000FFFFULL) << 16U) | ((value >> 16U) & 0x0000FFFF0000FFFFULL);
  return (value << 32U) | (value >> 32U);
}

/// The 8 bytes at `from`, which needs no alignment.
inline std::uint64_t LoadLittle64(const std::uint8_t* from) {
  std::uint64_t value = 0;
  std::memcpy(&value, from, sizeof(value));
  if constexpr (std::endian::native != std::endian::little) value = SwapBytes64(value);
  return value;
}

inline void StoreLittle64(std::uint8_t* to, std::uint64_t value) {
  if constexpr (std::endian::native != std::endian::little) value = SwapBytes64(value);
  std::memcpy(to, &value, sizeof(value));
}

inline std::uint16_t LoadLittle16(const std::uint8_t* from) {
  return static_cast<std::uint16_t>(from[0] | (from[1] << 8U));
}

inline void StoreLittle16(std::uint8_t* to, std::uint16_t value) {
  to[0] = static_cast<std::uint8_t>(value & 0xFFU);
  to[1] = static_cast<std::uint8_t>(value >> 8U);
}

inline std::uint32_t LoadLittle32(const std::uint8_t* from) {
  return std::uint32_t{from[0]} | (std::uint32_t{from[1]} << 8U) | (std::uint32_t{from[2]} << 16U) |
         (std::uint32_t{from[3]} << 24U);
}

inline void StoreLittle32(std::uint8_t* to, std::uint32_t value) {
  for (unsigned i = 0; i < 4; ++i) to[i] = static_cast<std::uint8_t>((value >> (8 * i)) & 0xFFU);
}

}  // namespace tarnvale
