// A network in memory, whose servers say what a test has them say.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "platform/socket.h"
#include "tests/support/manual_loop.h"

namespace tarnvale::testing {

class FakeNetwork;
class FakeSocket;

/// One connection as its server sees it. Bytes that the program sends arrive at
/// once; what the server does comes to the program from the event loop.
class FakeConnection {
 public:
  using Nanoseconds = std::chrono::nanoseconds;

  struct Chunk {
    Nanoseconds at;  ///< of the clock that timers go by
    std::string bytes;
  };

  /// What arrived, one chunk for each Send.
  const std::vector<Chunk>& Chunks() const { return chunks_; }
  std::string Text() const;
  /// The program has closed its side.
  bool IsEnded() const { return ended_; }

  // What the server does, now or after a while.
  void Say(const std::string& bytes, Nanoseconds after = {});
  /// Ends its sending side alone: what the program sends still arrives.
  void EndSending(Nanoseconds after = {});
  /// Closes both sides. The program's next bytes are lost, and with those after
  /// them its connection fails with kConnectionAborted.
  void HangUp(Nanoseconds after = {});
  /// The connection fails with kConnectionReset.
  void Reset(Nanoseconds after = {});

 private:
  friend class FakeSocket;
  explicit FakeConnection(FakeNetwork& network) : network_(network) {}
  void Later(Nanoseconds after, std::function<void(FakeSocket&)> act);

  FakeNetwork& network_;
  FakeSocket* socket_ = nullptr;  ///< none when the program has let go of it
  std::vector<Chunk> chunks_;
  bool ended_ = false;
  bool hung_up_ = false;
};

/// What listens at one host and port.
class FakeServer {
 public:
  /// Connections fail with this number; 0: they don't.
  int fails_with = 0;
  /// Connections neither succeed nor fail.
  bool never_answers = false;
  std::function<void(FakeConnection&)> on_connect;
  std::function<void(FakeConnection&, const std::string& bytes)> on_bytes;

  std::size_t ConnectionCount() const { return connections_.size(); }
  FakeConnection& Connection(std::size_t index = 0) { return *connections_.at(index); }

 private:
  friend class FakeSocket;
  std::vector<std::shared_ptr<FakeConnection>> connections_;
};

class FakeNetwork : public Sockets {
 public:
  FakeNetwork(ManualLoop& loop, FakeClock& clock) : loop_(loop), clock_(clock) {}

  /// A server from now on. Without one, a host isn't found (kHostNotFound), or
  /// another port of it refuses (kConnectionRefused).
  FakeServer& AddServer(const std::string& host, std::uint16_t port);

  /// Every host and port that the program connected to, as "host:port".
  const std::vector<std::string>& Requested() const { return requested_; }

  std::unique_ptr<Socket> MakeSocket() override;

 private:
  friend class FakeConnection;
  friend class FakeSocket;

  struct Listener {
    std::string host;
    std::uint16_t port;
    std::unique_ptr<FakeServer> server;
  };

  FakeServer* Find(const std::string& host, std::uint16_t port);
  bool HasHost(const std::string& host) const;
  void Later(std::chrono::nanoseconds after, std::function<void()> job);

  ManualLoop& loop_;
  FakeClock& clock_;
  std::vector<Listener> listeners_;
  std::vector<std::string> requested_;
  std::list<Timer> timers_;
};

}  // namespace tarnvale::testing
