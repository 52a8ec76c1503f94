// A server on this machine's loopback address, driven by its test.
#pragma once

#include <cstdint>
#include <string>

#include "tests/hosts/contract/loopback.h"

namespace tarnvale::testing {

/// Serves one connection at a time, and only while its functions are called:
/// none of them waits.
class LoopbackServer {
 public:
  /// Listens on a port; 0: a free one.
  explicit LoopbackServer(std::uint16_t port = 0);

  std::uint16_t Port() const { return port_; }

  /// Takes a connection that waits, in place of an older one. False when none
  /// does.
  bool Accept();
  bool HasConnection() const { return static_cast<bool>(connection_); }

  /// Reads what has come.
  void Read();
  const std::string& Received() const { return received_; }
  /// The client has ended its side, and everything before that was read.
  bool SawEnd() const { return saw_end_; }
  /// The error that ended the reading; 0 when none did.
  int ReadError() const { return read_error_; }

  /// Sends as much as goes without waiting; returns how much that was.
  std::size_t Say(const std::string& bytes);
  void EndSending() { EndSendingOn(connection_.Get()); }
  void HangUp() { connection_.Close(); }
  void Reset() { connection_.Reset(); }

  /// Takes no connections any more.
  void StopListening() { listener_.Close(); }

 private:
  std::uint16_t port_ = 0;
  LoopbackSocket listener_;
  LoopbackSocket connection_;
  std::string received_;
  bool saw_end_ = false;
  int read_error_ = 0;
};

}  // namespace tarnvale::testing
