// Memory that the machine really has.
#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstring>

namespace tarnvale {

/// Uses so much memory once and gives it back, for what is measured next, which may need all
/// of it. The memory that a virtual machine has free may be its host's again within seconds;
/// whoever takes it then waits for the host, many times as long as filling it takes, and the
/// contestant that needs more loses by that alone. Raises nothing.
inline void WarmMemory(std::size_t mib) {
  const std::size_t bytes = mib << 20U;
  void* const memory =
      ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return;
  ::madvise(memory, bytes, MADV_HUGEPAGE);
  std::memset(memory, 1, bytes);
  ::munmap(memory, bytes);
}

}  // namespace tarnvale
