// Connections that the program has closed.
#pragma once

#include <list>
#include <memory>
#include <string>

#include "platform/descriptor_watches.h"
#include "platform/event_loop.h"
#include "platform/linux/descriptor.h"

namespace tarnvale {

/// Sees closed connections off: sends what still waits, ends the sending side,
/// and throws away what the server says until it hangs up, a minute at most.
///
/// Closing at once would have the system answer the server's next word with a
/// reset, and the server lose what it hasn't read yet.
class Farewells {
 public:
  /// Both must outlive it.
  Farewells(EventLoop& loop, DescriptorWatches& watches) : loop_(loop), watches_(watches) {}
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
    std::unique_ptr<Timer> limit;
    std::unique_ptr<DescriptorWatch> readable;
    std::unique_ptr<DescriptorWatch> writable;
  };
  using Place = std::list<Leaving>::iterator;

  void SendRest(Place place);
  void DropReply(Place place);
  void Forget(Place place);

  EventLoop& loop_;
  DescriptorWatches& watches_;
  std::list<Leaving> leaving_;
  /// Ended ones, whose timer or watch may be what is running.
  std::list<Leaving> gone_;
  std::shared_ptr<int> life_ = std::make_shared<int>();
};

}  // namespace tarnvale
