// A process of its own for what would harm the test's.
#pragma once

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <functional>

#include "base/out_of_memory.h"

namespace tarnvale::testing {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif
#else
inline constexpr bool kSanitized = false;
#endif

/// Lets the address space of this process grow by so much and no more.
inline void LimitMemory(std::uint64_t room_bytes) {
  std::uint64_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  const rlim_t most = pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) + room_bytes;
  const rlimit limit{most, most};
  ::setrlimit(RLIMIT_AS, &limit);
}

/// Runs `child` in a forked process with little memory, as the program does: an
/// allocation that fails is an error. Returns what `child` returns; 1000 and the
/// number for a process that a signal ended.
inline int WithLittleMemory(std::uint64_t room_bytes, const std::function<int()>& child) {
  const pid_t process = ::fork();
  if (process == 0) {
    RaiseOutOfMemory();
    LimitMemory(room_bytes);
    // Nothing leaves the child: what is up the stack belongs to the test.
    const auto run = [&]() noexcept { return child(); };
    ::_exit(run());
  }
  int status = 0;
  if (process < 0 || ::waitpid(process, &status, 0) != process) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

}  // namespace tarnvale::testing
