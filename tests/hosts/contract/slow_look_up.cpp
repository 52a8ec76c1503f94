#include "tests/hosts/contract/slow_look_up.h"

#include <chrono>
#include <thread>

namespace tarnvale::testing {

SlowLookUp& TheSlowLookUp() {
  static auto& look_up = *new SlowLookUp;
  return look_up;
}

void SlowLookUp::Wait() {
  begun = true;
  while (!released) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

#ifdef _WIN32

int LookUpSlowly(const std::string& host, const std::string& port, addrinfo** found) {
  if (host != "slow.example") return LookUp(host, port, found);
  TheSlowLookUp().Wait();
  return LookUp("127.0.0.1", port, found);
}

#endif

}  // namespace tarnvale::testing

#ifndef _WIN32

#include <dlfcn.h>
#include <netdb.h>

#include <cstring>

// Stands in for the system's.
extern "C" int getaddrinfo(const char* host, const char* service, const addrinfo* hints,
                           addrinfo** result) {
  using Real = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
  static const auto real = reinterpret_cast<Real>(::dlsym(RTLD_NEXT, "getaddrinfo"));
  const bool numeric = hints != nullptr && (hints->ai_flags & AI_NUMERICHOST) != 0;
  if (host != nullptr && std::strcmp(host, "slow.example") == 0 && !numeric) {
    tarnvale::testing::TheSlowLookUp().Wait();
    return real("127.0.0.1", service, hints, result);
  }
  return real(host, service, hints, result);
}

#endif
