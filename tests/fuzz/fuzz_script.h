// What the targets share: bytes as a script, and what must hold whatever they are.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

namespace tarnvale::testing {

inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "fuzzing: %s\n", what);
  std::abort();
}

/// Bytes that say, one after the other, what somebody does.
class FuzzScript {
 public:
  explicit FuzzScript(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  bool IsOver() const { return bytes_.empty(); }
  /// The next one; 0 behind the end.
  std::uint8_t Next() {
    if (IsOver()) return 0;
    const std::uint8_t byte = bytes_.front();
    bytes_ = bytes_.subspan(1);
    return byte;
  }
  /// As many bytes as the next one says, and there are.
  std::string Text() {
    const std::size_t count = Next();
    const auto said = bytes_.first(std::min(count, bytes_.size()));
    bytes_ = bytes_.subspan(said.size());
    return {said.begin(), said.end()};
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

}  // namespace tarnvale::testing
