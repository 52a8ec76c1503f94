// A source of random numbers.
#pragma once

namespace tarnvale {

class RandomSource {
 public:
  virtual ~RandomSource() = default;
  /// At least 0 and below 1.
  virtual double Next() = 0;
};

}  // namespace tarnvale
