// A buffer of bytes that doesn't touch its memory before somebody writes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
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

}  // namespace tarnvale
