// Sockets and moments under watch of Qt's event loop.
#pragma once

#include <memory>

#include "platform/event_loop.h"
#include "platform/socket_watch.h"

namespace tarnvale {

class QtSocketWatcher final : public SocketWatcher {
 public:
  /// Handlers go through the loop's Deliver; it must outlive every watch.
  explicit QtSocketWatcher(EventLoop& loop) : loop_(loop) {}

  std::unique_ptr<SocketWatch> Watch(NativeSocket socket,
                                     std::function<void(SocketReadiness)> ready) override;
  std::unique_ptr<Alarm> NewAlarm(std::function<void()> ring) override;

 private:
  EventLoop& loop_;
};

}  // namespace tarnvale
