// Client sockets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "base/signal.h"

namespace tarnvale {

/// The classic numbers of what can go wrong with a connection.
enum SocketError : int {
  kSocketAccessDenied = 10013,
  kAddressNotAvailable = 10049,
  kNetworkDown = 10050,
  kNetworkUnreachable = 10051,
  kConnectionAborted = 10053,
  kConnectionReset = 10054,
  kNoBufferSpace = 10055,
  kConnectTimedOut = 10060,
  kConnectionRefused = 10061,
  kHostUnreachable = 10065,
  kHostNotFound = 11001,
  kHostNotFoundTryAgain = 11002,
  kNameServerFailure = 11003,
  kNoAddressForName = 11004,
  kWrongConnectionState = 40006,
  kSocketInUse = 40020,
};

/// The fixed English description of one of the numbers, without a full stop;
/// that of kConnectionAborted for any other.
std::string SocketErrorText(int number);

enum class SocketState {
  kClosed,      ///< new, or closed by the program
  kConnecting,  ///< looking for the host, or waiting for its answer
  kConnected,
  kClosedByPeer,  ///< nothing comes any more; what is sent still goes out
  kFailed,
};

/// The most that one DataArrived reports: what a server floods waits at its own end.
inline constexpr std::size_t kMostBytesAtOnce = 65536;

/// A TCP connection to one server at a time.
///
/// No call blocks, raises, yields or emits. What happens is reported by the signals,
/// from the event loop, in the order in which it happened; Connected comes before
/// anything else that its connection reports. A handler may take long and yield:
/// the other signals come meanwhile.
class Socket {
 public:
  virtual ~Socket() = default;

  /// Looks up the host (a name or a numeric address) and connects; Connected or
  /// Failed reports the outcome. In the states kClosedByPeer and kFailed the old
  /// connection is closed first. While it is connecting or connected it fails
  /// with kSocketInUse, and the connection goes on as if nothing had been requested.
  virtual void Connect(const std::string& host, std::uint16_t port) = 0;

  /// Sends bytes behind all that were sent before. What the network doesn't take
  /// at once waits here. Without a connection it fails with
  /// kWrongConnectionState, the bytes are lost, and the state stays.
  virtual void Send(const std::string& bytes) = 0;

  /// Ends the connection, or the attempt. What was sent before still arrives as
  /// far as the server takes it, within a minute; of what the server says meanwhile
  /// no more than kMostBytesAtOnce is read. Nothing of the old connection is
  /// reported any more, not even what has happened already.
  virtual void Close() = 0;

  virtual SocketState State() const = 0;

  Signal<> Connected;
  /// Bytes that came: one to kMostBytesAtOnce.
  Signal<const std::string&> DataArrived;
  /// The server has ended its side; after the last DataArrived.
  Signal<> ClosedByPeer;
  /// One of SocketError; see SocketErrorText.
  Signal<int> Failed;
};

/// Makes sockets. They must be gone before it.
class Sockets {
 public:
  virtual ~Sockets() = default;
  virtual std::unique_ptr<Socket> MakeSocket() = 0;
};

}  // namespace tarnvale
