// The limit on how long a request may stand still.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/socket_watch.h"

namespace tarnvale {

class SilenceLimit {
 public:
  /// `moves` is asked now and then, for what moves without being noticed.
  /// `ended` is called from the loop, once, when nothing moved for the limit.
  SilenceLimit(SocketWatcher& watcher, std::function<bool()> moves, std::function<void()> ended);

  /// Starts anew. 0 seconds: no limit.
  void Begin(std::int32_t seconds);
  /// Something moved.
  void Touch() { moved_at_ = Clock::now(); }
  void Stop();

 private:
  using Clock = std::chrono::steady_clock;

  void Look();
  void SetAlarm();

  std::function<bool()> moves_;
  std::function<void()> ended_;
  std::chrono::milliseconds limit_{};
  Clock::time_point moved_at_;
  std::unique_ptr<Alarm> alarm_;
};

}  // namespace tarnvale
