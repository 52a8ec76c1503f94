#include "hosts/linux/linux_workers.h"

#include <sched.h>

#include <algorithm>
#include <system_error>
#include <thread>
#include <vector>

namespace tarnvale {

// Of those that this process may use: in a container fewer than the machine has.
std::size_t LinuxWorkers::Helpers() {
  cpu_set_t allowed;
  if (::sched_getaffinity(0, sizeof allowed, &allowed) != 0) return 0;
  return static_cast<std::size_t>(CPU_COUNT(&allowed)) - 1;
}

void LinuxWorkers::Run(std::size_t most_helpers, const std::function<void()>& work) {
  std::vector<std::jthread> helpers;
  const std::size_t count = std::min(most_helpers, Helpers());
  helpers.reserve(count);
  try {
    while (helpers.size() < count) helpers.emplace_back(work);
  } catch (const std::system_error&) {
    // Without more threads it takes longer.
  }
  work();
}

void LinuxWorkers::LetOthersRun() {
  ::sched_yield();
}

}  // namespace tarnvale
