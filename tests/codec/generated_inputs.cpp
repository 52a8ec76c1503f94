#include "tests/codec/generated_inputs.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tarnvale::testing {
namespace {

void Mix(Bytes& bytes, Numbers& numbers) {
  for (std::size_t i = bytes.size(); i > 1; --i) std::swap(bytes[i - 1], bytes[numbers.Below(i)]);
}

}  // namespace

Bytes GenerateInput(std::uint64_t seed, std::size_t length, std::size_t symbols) {
  Numbers numbers(seed);
  const std::size_t slope = numbers.Below(4);
  const std::size_t first = numbers.Below(256);
  Bytes bytes(length);
  for (std::uint8_t& byte : bytes) {
    std::size_t value = numbers.Below(symbols);
    for (std::size_t i = 0; i < slope; ++i) value = std::min(value, numbers.Below(symbols));
    if (slope == 3 && numbers.Below(4) != 0) value /= 16;
    byte = static_cast<std::uint8_t>(first + value);
  }
  return bytes;
}

Bytes FibonacciInput(std::size_t values) {
  Bytes bytes;
  std::size_t weight = 1;
  std::size_t next = 1;
  for (std::size_t value = 0; value < values; ++value) {
    bytes.insert(bytes.end(), weight, static_cast<std::uint8_t>(value));
    weight = std::exchange(next, weight + next);
  }
  Numbers numbers(values);
  Mix(bytes, numbers);
  return bytes;
}

Bytes TiedInput(std::uint64_t seed, std::size_t symbols, std::size_t times) {
  Numbers numbers(seed);
  Bytes bytes;
  for (std::size_t value = 0; value < symbols; ++value) {
    bytes.insert(bytes.end(), times, static_cast<std::uint8_t>(255 - value));
  }
  Mix(bytes, numbers);
  return bytes;
}

Bytes ProseInput(std::uint64_t seed, std::size_t length) {
  constexpr std::string_view kLetters = "      eeeeetttaaooiinnsshhrdlucmfwygpbvk,.TAQxz1\n";
  Numbers numbers(seed);
  Bytes bytes(length);
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(kLetters[numbers.Below(kLetters.size())]);
  }
  return bytes;
}

}  // namespace tarnvale::testing
