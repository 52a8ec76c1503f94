// Connections that the program has closed.
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <string>

#include "platform/linux/descriptor.h"
#include "platform/socket_watch.h"

namespace tarnvale {

/// Sees closed connections off: sends what still waits, ends the sending side,
/// and throws away what the server says until it hangs up, a minute at most.
///
/// Closing at once would have the system answer the server's next word with a
/// reset, and the server lose what it hasn't read yet.
class Farewells {
 public:
  /// `watcher` must outlive it.
  explicit Farewells(SocketWatcher& watcher) : watcher_(watcher) {}
  Farewells(const Farewells&) = delete;
  Farewells& operator=(const Farewells&) = delete;

  /// Takes over a connection and the bytes that wait for it.
  void Take(Descriptor connection, std::string unsent);

  /// How many are still on their way.
  std::size_t Count() const { return leaving_.size(); }

 private:
  struct Leaving {
    Descriptor connection;
    std::string unsent;
    std::size_t sent = 0;
    SocketReadiness wanted{.readable = true, .writable = true};
    std::unique_ptr<Alarm> limit;
    std::unique_ptr<SocketWatch> watch;  ///< goes before the connection
  };
  using Place = std::list<Leaving>::iterator;

  void OnReady(Place place, SocketReadiness ready);
  void SendRest(Place place);
  void DropReply(Place place);
  void Want(Place place, SocketReadiness wanted);

  SocketWatcher& watcher_;
  std::list<Leaving> leaving_;
};

}  // namespace tarnvale
