// Screen updates at a steady pace.
#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>
#include <vector>

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
/// requested that. The clock stops while nothing is requested.
class FrameClock {
 public:
  FrameClock();

  /// Calls the client's OnFrame in a later pass of the event loop.
  void Request(FrameClient& client);
  /// For a client that goes away.
  void Forget(FrameClient& client);
  /// Calls one client now if it waits.
  void Hurry(FrameClient& client);

 private:
  void Tick();

  std::vector<FrameClient*> waiting_;
  std::chrono::steady_clock::time_point last_frame_{};
  QTimer timer_;
};

}  // namespace tarnvale
