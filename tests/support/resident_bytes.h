// The memory that a test's process has.
#pragma once

#include <cstddef>

#ifdef _WIN32
#include <windows.h>

#include <psapi.h>
#else
#include <unistd.h>

#include <fstream>
#endif

namespace tarnvale::testing {

inline std::size_t ResidentBytes() {
#ifdef _WIN32
  PROCESS_MEMORY_COUNTERS counters{};
  ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters);
  return counters.WorkingSetSize;
#else
  std::ifstream table("/proc/self/statm");
  std::size_t all_pages = 0;
  std::size_t resident_pages = 0;
  table >> all_pages >> resident_pages;
  return resident_pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
#endif
}

}  // namespace tarnvale::testing
