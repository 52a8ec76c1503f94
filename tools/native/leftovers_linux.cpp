#include "native/leftovers_linux.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cassert>
#include <cstddef>

namespace tarnvale {
namespace {

struct Registered {
  std::array<char, 48> name;
  int flags;
};

// A handler of a signal can reach nothing but globals, and may call little.
std::array<Registered, 3> registered;
int registered_folder = -1;
volatile sig_atomic_t registered_count = 0;

void DeleteRegistered() {
  for (int i = 0; i < registered_count; ++i) {
    const Registered& entry = registered[static_cast<std::size_t>(i)];
    ::unlinkat(registered_folder, entry.name.data(), entry.flags);
  }
}

extern "C" void EndBySignal(int number) {
  DeleteRegistered();
  // The default action was put back before this ran.
  ::raise(number);
}

}  // namespace

void CatchEndingSignals() {
  for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
    struct sigaction now {};
    ::sigaction(number, nullptr, &now);
    // Whoever started us may want it to be ignored (nohup).
    if (now.sa_handler == SIG_IGN) continue;
    struct sigaction action {};
    action.sa_handler = &EndBySignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigaction(number, &action, nullptr);
  }
}

Leftovers::Leftovers(int folder_fd, const std::array<Entry, 3>& entries) {
  assert(registered_count == 0);
  registered_folder = folder_fd;
  int count = 0;
  for (const Entry& entry : entries) {
    if (entry.name.empty()) continue;
    Registered& place = registered[static_cast<std::size_t>(count++)];
    assert(entry.name.size() < place.name.size());
    place.name[entry.name.copy(place.name.data(), place.name.size() - 1)] = '\0';
    place.flags = entry.is_folder ? AT_REMOVEDIR : 0;
  }
  std::atomic_signal_fence(std::memory_order_release);
  registered_count = count;
}

Leftovers::~Leftovers() {
  DeleteRegistered();
  registered_count = 0;
}

}  // namespace tarnvale
