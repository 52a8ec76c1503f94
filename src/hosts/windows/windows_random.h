// Random numbers from the system's source.
#pragma once

#include <cstdint>
#include <random>

#include "platform/random_source.h"

namespace tarnvale {

std::uint64_t RandomBits();

class WindowsRandom : public RandomSource {
 public:
  double Next() override;

 private:
  std::mt19937_64 generator_{RandomBits()};
};

}  // namespace tarnvale
