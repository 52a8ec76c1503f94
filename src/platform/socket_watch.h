// What a client of sockets asks of the event loop: to be told when a socket is
// ready, and when a moment has come.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace tarnvale {

/// A socket as the system numbers it.
using NativeSocket = std::intptr_t;

/// Which of the two is asked for, or is the case.
struct SocketReadiness {
  bool readable = false;
  bool writable = false;
};

/// One socket under watch. Must go before its socket is closed; may go inside
/// its own handler.
class SocketWatch {
 public:
  virtual ~SocketWatch() = default;

  /// From now on the handler is called, again and again, while the socket is in
  /// one of these states. Nothing at first.
  virtual void Want(SocketReadiness wanted) = 0;
};

/// A moment to be told of. May go inside its own handler.
class Alarm {
 public:
  virtual ~Alarm() = default;

  /// Rings once after this time, whatever was set before. Zero: in the next
  /// pass of the loop, never at once.
  virtual void Set(std::chrono::milliseconds wait) = 0;
  virtual void Clear() = 0;
};

/// Handlers are called while the loop yields, and through its Deliver. A wait
/// pass that sleeps wakes for them.
class SocketWatcher {
 public:
  virtual ~SocketWatcher() = default;

  virtual std::unique_ptr<SocketWatch> Watch(NativeSocket socket,
                                             std::function<void(SocketReadiness)> ready) = 0;
  virtual std::unique_ptr<Alarm> NewAlarm(std::function<void()> ring) = 0;
};

}  // namespace tarnvale
