// Names of what is in work.
#pragma once

#include <random>
#include <string>

namespace tarnvale {

/// A name that nobody else has: ".tvz-" and 16 hexadecimal digits.
inline std::string WorkName() {
  constexpr const char* kDigits = "0123456789abcdef";
  std::random_device random;
  std::string name = ".tvz-";
  for (int i = 0; i < 16; ++i) name += kDigits[random() % 16];
  return name;
}

}  // namespace tarnvale
