// Screen updates at a steady pace.
#pragma once

#include <vector>

#include "ui/timer.h"

namespace tarnvale {

/// Something that brings the screen up to date with a record, some time after
/// the record changed.
class FrameClient {
 public:
  virtual ~FrameClient() = default;
  virtual void OnFrame() = 0;

 private:
  friend class FrameClock;
  bool is_waiting_ = false;
};

/// Calls its clients at most 60 times a second, each once however often it
/// asked. The clock doesn't run while nobody asks.
class FrameClock {
 public:
  explicit FrameClock(TimerQueue& queue);

  /// Calls the client's OnFrame in a later pass of the event loop.
  void Request(FrameClient& client);
  /// For a client that goes away.
  void Forget(FrameClient& client);

 private:
  void Tick();

  std::vector<FrameClient*> waiting_;
  Timer timer_;
};

}  // namespace tarnvale
