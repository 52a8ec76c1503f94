// The networks that the contract of sockets is tested on.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/socket.h"
#include "ui/event_loop.h"

namespace tarnvale::testing {

/// A network with one server. Its test drives both ends.
class NetworkUnderTest {
 public:
  virtual ~NetworkUnderTest() = default;

  virtual EventLoop& Loop() = 0;
  virtual Sockets& Maker() = 0;

  virtual std::string Host() = 0;
  virtual std::uint16_t Port() = 0;
  /// Nobody listens there.
  virtual std::uint16_t DeadPort() = 0;

  /// Lets the loop and the server run until `condition` holds, ten seconds at
  /// most. False when it never did.
  virtual bool WaitFor(const std::function<bool()>& condition) = 0;

  // The server's side.
  virtual bool HasConnection() = 0;
  /// All that came by the connection that was made last.
  virtual std::string Received() = 0;
  virtual bool SawEnd() = 0;
  virtual void Say(const std::string& bytes) = 0;
  virtual void EndSending() = 0;
  virtual void HangUp() = 0;
  virtual void Reset() = 0;
};

using MakeNetwork = std::unique_ptr<NetworkUnderTest> (*)();

std::unique_ptr<NetworkUnderTest> MakeFakeNetwork();
/// Real sockets in the host's loop.
std::unique_ptr<NetworkUnderTest> MakeLoopbackNetwork();

}  // namespace tarnvale::testing
