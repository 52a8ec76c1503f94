// Random numbers from the system's seed.
#pragma once

#include <random>

#include "platform/random_source.h"

namespace tarnvale {

class LinuxRandom : public RandomSource {
 public:
  LinuxRandom();
  double Next() override;

 private:
  std::mt19937_64 generator_;
};

}  // namespace tarnvale
