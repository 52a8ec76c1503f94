// Sockets of this machine, in a loop that a test drives, and one server.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <vector>

#include "tests/hosts/contract/loopback_server.h"
#include "tests/hosts/contract/network_parts.h"
#ifdef _WIN32
#include "tests/hosts/contract/slow_look_up.h"
#endif
#include "tests/support/run_until.h"
#include "ui/timer.h"

namespace tarnvale::testing {

class RealSockets : public ::testing::Test {
 protected:
  RealSockets() {
    loop.Fault.Listen([this](const ProgramError& error) { faults.push_back(error.Number()); });
    pulse.Tick.Listen([this] { ++ticks; });
  }

  /// `each_pass` is what the server does meanwhile.
  bool WaitFor(
      const std::function<bool()>& condition, const std::function<void()>& each_pass = [] {}) {
    return RunUntil(loop, condition, std::chrono::seconds(20), each_pass);
  }

  HostLoop loop;
#ifdef _WIN32
  HostSockets sockets{loop, std::chrono::minutes(1), LookUpSlowly};
#else
  HostSockets sockets{loop};
#endif
  LoopbackServer server;
  std::vector<int> faults;
  Timer pulse{loop.Timers(), 20, true};
  int ticks = 0;
};

}  // namespace tarnvale::testing
