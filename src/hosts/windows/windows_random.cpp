#include "hosts/windows/windows_random.h"

#include <windows.h>

// Declares what is exported as SystemFunction036.
#include <ntsecapi.h>

namespace tarnvale {

std::uint64_t RandomBits() {
  std::uint64_t bits = 0;
  if (::RtlGenRandom(&bits, sizeof bits) != 0) return bits;
  LARGE_INTEGER now{};
  ::QueryPerformanceCounter(&now);
  return static_cast<std::uint64_t>(now.QuadPart) * 0x9e3779b97f4a7c15U + ::GetCurrentProcessId();
}

double WindowsRandom::Next() {
  // 53 bits are all that a double holds; 1 can't come out.
  return static_cast<double>(generator_() >> 11U) * 0x1.0p-53;
}

}  // namespace tarnvale
