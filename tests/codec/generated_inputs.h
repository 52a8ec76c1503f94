// Inputs that are the same on every machine.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tests/codec/plain_coder.h"

namespace tarnvale::testing {

/// A generator of numbers whose sequence its seed fixes everywhere.
class Numbers {
 public:
  explicit Numbers(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15ULL + 1) {}
  /// 0 to `below` - 1.
  std::size_t Below(std::size_t below) { return static_cast<std::size_t>(Next() % below); }

 private:
  std::uint64_t Next() {
    state_ ^= state_ << 13U;
    state_ ^= state_ >> 7U;
    state_ ^= state_ << 17U;
    return state_ * 0x2545F4914F6CDD1DULL >> 11U;
  }
  std::uint64_t state_;
};

/// `length` bytes of `symbols` values (1 to 256). The weights of the values fall
/// evenly, steeply or not at all, by the seed.
Bytes GenerateInput(std::uint64_t seed, std::size_t length, std::size_t symbols);

/// The value k as often as the k-th Fibonacci number: the longest codes that an
/// input of this length can have. `values` is 2 to 40.
Bytes FibonacciInput(std::size_t values);

/// Every one of `symbols` values `times` times, mixed.
Bytes TiedInput(std::uint64_t seed, std::size_t symbols, std::size_t times);

/// Letters and blanks in about the proportions of prose.
Bytes ProseInput(std::uint64_t seed, std::size_t length);

}  // namespace tarnvale::testing
