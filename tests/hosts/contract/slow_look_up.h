// Looking up "slow.example" takes as long as a test wants; it is this machine then.
#pragma once

#include <atomic>

#ifdef _WIN32
#include "hosts/windows/windows_sockets.h"
#endif

namespace tarnvale::testing {

struct SlowLookUp {
  std::atomic<bool> begun = false;
  std::atomic<bool> released = false;

  void Wait();
};

/// Never destroyed: a look-up that was given up may still wait in it.
SlowLookUp& TheSlowLookUp();

#ifdef _WIN32
/// What sockets are given; elsewhere it stands in for the system's own.
int LookUpSlowly(const std::string& host, const std::string& port, addrinfo** found);
#endif

}  // namespace tarnvale::testing
