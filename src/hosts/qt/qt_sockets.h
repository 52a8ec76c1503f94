// Client sockets on Qt's.
#pragma once

#include <QObject>
#include <QTcpSocket>

#include <chrono>
#include <memory>
#include <string>

#include "platform/socket.h"
#include "ui/event_loop.h"

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

class QtSocket final : public Socket {
 public:
  /// Both must outlive it; `leaving` takes the connections that it closes.
  QtSocket(EventLoop& loop, ClosedConnections& leaving) : loop_(loop), leaving_(leaving) {}
  /// As Close.
  ~QtSocket() override;

  void Connect(const std::string& host, std::uint16_t port) override;
  void Send(const std::string& bytes) override;
  void Close() override;
  SocketState State() const override { return state_; }

 private:
  struct DeleteLater {
    void operator()(QTcpSocket* connection) const;
  };

  // In the order in which a connection goes through them.
  void Open(const std::string& host, std::uint16_t port);
  void OnConnected();
  void Fetch();
  void Report();
  void OnError(int number);
  void Fail(int number);
  void LetGo();

  /// Runs `job` from the loop, unless the connection has been let go by then.
  template <class Job>
  void Later(Job job);
  void ReportFailed(int number);

  EventLoop& loop_;
  ClosedConnections& leaving_;

  SocketState state_ = SocketState::kClosed;
  std::unique_ptr<QTcpSocket, DeleteLater> connection_;
  // What happened and wasn't reported yet, in this order.
  std::string arrived_;
  bool server_ended_ = false;
  int error_ = 0;
  /// One for each connection.
  std::shared_ptr<int> life_ = std::make_shared<int>();
};

}  // namespace tarnvale
