// A second coder, as plain as can be: one bit at a time, one report at a time.
// It shares no code with the program's; the two must agree on everything.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarnvale::testing {

using Bytes = std::vector<std::uint8_t>;

/// What came of one call.
struct Outcome {
  Bytes bytes;                ///< the buffer afterwards
  std::vector<int> progress;  ///< all events
  long error = 0;             ///< 0: none
  std::string source;
  std::string description;

  bool operator==(const Outcome&) const = default;
};

Outcome EncodePlainly(const Bytes& input);
Outcome DecodePlainly(const Bytes& stream);

}  // namespace tarnvale::testing
