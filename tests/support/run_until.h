// Waiting for a condition on a real event loop.
#pragma once

#include <chrono>
#include <functional>

#include "ui/event_loop.h"

namespace tarnvale::testing {

/// Lets the loop run until `condition` holds. False when it doesn't within `patience`.
inline bool RunUntil(
    EventLoop& loop, const std::function<bool()>& condition,
    std::chrono::milliseconds patience = std::chrono::seconds(20),
    const std::function<void()>& each_pass = [] {}) {
  const auto limit = std::chrono::steady_clock::now() + patience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > limit) return false;
    each_pass();
    loop.WaitPass();
  }
  return true;
}

}  // namespace tarnvale::testing
