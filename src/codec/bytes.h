// Bytes: a buffer of them, numbers in them, one replaced by another.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace tarnvale {

/// Owns `Size()` bytes. New bytes have no defined value: filling a buffer with
/// zeros first would double the time that coding takes.
class ByteBuffer {
 public:
  ByteBuffer() = default;
  explicit ByteBuffer(std::size_t size_bytes) { Renew(size_bytes, size_bytes); }
  explicit ByteBuffer(std::string_view bytes) : ByteBuffer(bytes.size()) {
    std::copy(bytes.begin(), bytes.end(), bytes_.get());
  }
  ByteBuffer(std::initializer_list<std::uint8_t> bytes) : ByteBuffer(bytes.size()) {
    std::copy(bytes.begin(), bytes.end(), bytes_.get());
  }
  ByteBuffer(ByteBuffer&& other) noexcept { Swap(other); }
  ByteBuffer& operator=(ByteBuffer&& other) noexcept {
    ByteBuffer(std::move(other)).Swap(*this);
    return *this;
  }

  std::uint8_t* Data() { return bytes_.get(); }
  const std::uint8_t* Data() const { return bytes_.get(); }
  std::size_t Size() const { return size_; }
  std::span<std::uint8_t> Bytes() { return {bytes_.get(), size_}; }
  std::span<const std::uint8_t> View() const { return {bytes_.get(), size_}; }
  std::string Text() const { return {bytes_.get(), bytes_.get() + size_}; }

  /// Room for at least `capacity` bytes, `size_bytes` of which count. What was
  /// there is lost; the memory is kept where it is large enough.
  void Renew(std::size_t size_bytes, std::size_t capacity) {
    if (capacity > capacity_) {
      // The old memory goes first, so that both are never held at once.
      bytes_.reset();
      size_ = capacity_ = 0;
      bytes_ = std::make_unique_for_overwrite<std::uint8_t[]>(capacity);
      capacity_ = capacity;
    }
    size_ = size_bytes;
  }

  /// Forgets the bytes behind the first `size_bytes`.
  void Shrink(std::size_t size_bytes) { size_ = std::min(size_, size_bytes); }

  void Swap(ByteBuffer& other) noexcept {
    std::swap(bytes_, other.bytes_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
  }

 private:
  std::unique_ptr<std::uint8_t[]> bytes_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

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
