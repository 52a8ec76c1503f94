// Sockets of this end of a test, on either system.
#pragma once

#include <cstddef>

namespace tarnvale::testing {

/// A socket that listens on 127.0.0.1; 0 picks a free port. -1 when it can't be.
int ListenOnLoopback(int port, int queue = 8);
/// A socket on its way to this port of 127.0.0.1. Doesn't wait.
int BeginToConnect(int port);
int PortOf(int socket);

/// A port of 127.0.0.1 and ::1 that nobody listened on a moment ago.
int FreeLoopbackPort();

/// True when somebody takes connections on this port of 127.0.0.1.
bool AnswersOnLoopback(int port);

/// The next connection; -1 when there is none.
int AcceptOn(int listener);
void SetNonBlocking(int socket);
/// As recv and send: how many, or -1, and then an error.
int ReceiveFrom(int socket, char* bytes, std::size_t count);
int SendTo(int socket, const char* bytes, std::size_t count);
/// Of the call before; 0 for a call that only would have had to wait, or waited too long.
int LastSocketError();
/// Reading waits no longer than this.
void LimitReading(int socket, int limit_ms);
/// The system takes so many bytes that nobody has received.
void LimitReceived(int socket, int bytes);
/// Whether the other end has ended its side or the connection within this time.
bool HangsUpWithin(int socket, int wait_ms);
void EndSendingOn(int socket);
/// Wakes whoever waits for it.
void EndSocket(int socket);
void CloseSocket(int socket);
/// Throws the connection away instead of closing it.
void ResetSocket(int socket);

/// A socket that is closed with its owner.
class LoopbackSocket {
 public:
  LoopbackSocket() = default;
  explicit LoopbackSocket(int socket) : socket_(socket) {}
  LoopbackSocket(const LoopbackSocket&) = delete;
  LoopbackSocket& operator=(const LoopbackSocket&) = delete;
  ~LoopbackSocket() { Close(); }

  explicit operator bool() const { return socket_ >= 0; }
  int Get() const { return socket_; }
  void Close() { Take(-1); }
  void Take(int socket) {
    if (socket_ >= 0) CloseSocket(socket_);
    socket_ = socket;
  }
  void Reset() {
    if (socket_ >= 0) ResetSocket(socket_);
    socket_ = -1;
  }

 private:
  int socket_ = -1;
};

}  // namespace tarnvale::testing
