// Client sockets on Qt's.
#pragma once

#include <QObject>
#include <QTcpSocket>

#include <chrono>
#include <memory>
#include <string>

#include "ui/loop_socket.h"

namespace tarnvale {

/// Owns the connections that the program has closed and the server hasn't.
struct ClosedConnections {
  explicit ClosedConnections(std::chrono::milliseconds time) : limit(time) {}
  std::chrono::milliseconds limit;
  QObject owner;
};

class QtSockets final : public Sockets {
 public:
  /// `loop` must outlive it and its sockets. A closed connection has
  /// `farewell_limit` to get what was sent to the server.
  explicit QtSockets(EventLoop& loop,
                     std::chrono::milliseconds farewell_limit = std::chrono::minutes(1))
      : loop_(loop), leaving_(farewell_limit) {}

  std::unique_ptr<Socket> MakeSocket() override;

 private:
  EventLoop& loop_;
  ClosedConnections leaving_;
};

class QtSocket final : public LoopSocket {
 public:
  /// Both must outlive it; `leaving` takes the connections that it closes.
  QtSocket(EventLoop& loop, ClosedConnections& leaving) : LoopSocket(loop), leaving_(leaving) {}
  /// As Close.
  ~QtSocket() override;

 private:
  struct DeleteLater {
    void operator()(QTcpSocket* connection) const;
  };

  void Open(const std::string& host, std::uint16_t port) override;
  SocketWaiting Look() override;
  std::string Read(std::size_t most) override;
  bool Write(const std::string& bytes) override;
  void Drop(bool sees_off) override;

  ClosedConnections& leaving_;
  std::unique_ptr<QTcpSocket, DeleteLater> connection_;
};

}  // namespace tarnvale
