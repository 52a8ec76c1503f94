#include "hosts/linux/linux_random.h"

namespace tarnvale {

LinuxRandom::LinuxRandom() {
  std::random_device device;
  std::seed_seq seed{device(), device(), device(), device()};
  generator_.seed(seed);
}

double LinuxRandom::Next() {
  // 53 bits are all that a double holds; 1 can't come out.
  return static_cast<double>(generator_() >> 11U) * 0x1.0p-53;
}

}  // namespace tarnvale
