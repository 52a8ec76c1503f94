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
/// requested that. While nothing is requested no loop wakes for it.
class FrameClock {
 public:
  explicit FrameClock(TimerQueue& queue);

  /// Calls the client's OnFrame in a later pass of the event loop: in the next one, unless
  /// there was a frame just now.
  void Request(FrameClient& client);
  /// For a client that goes away.
  void Forget(FrameClient& client);
  /// Calls one client now if it waits.
  void Hurry(FrameClient& client);

 private:
  void Draw();

  std::vector<FrameClient*> waiting_;
  Timer soon_;  ///< for the first frame after a pause
  Timer pace_;  ///< runs from one frame to the next
};

}  // namespace tarnvale
