// What the sockets of all hosts share: their states, and reports from the event loop in
// the order in which things happened.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/socket.h"
#include "ui/event_loop.h"

namespace tarnvale {

/// What the next read of a connection would find.
enum class SocketWaiting { kNothing, kBytes, kEnd, kReset, kLoss };

/// A host derives its sockets from it and says what the network does. Their destructors
/// call Close.
class LoopSocket : public Socket {
 public:
  void Connect(const std::string& host, std::uint16_t port) final;
  void Send(const std::string& bytes) final;
  void Close() final;
  SocketState State() const final { return state_; }

 protected:
  /// `loop` must outlive it.
  explicit LoopSocket(EventLoop& loop) : loop_(loop) {}

  // What a host does. None of it emits.

  /// Begins to look up the host, which isn't empty, and to connect; OnConnected or OnError
  /// reports how it went.
  virtual void Open(const std::string& host, std::uint16_t port) = 0;
  /// Of the connection that is open.
  virtual SocketWaiting Look() = 0;
  /// Takes so many of the bytes that wait, or fewer.
  virtual std::string Read(std::size_t most) = 0;
  /// Sends now or later. False for a connection that is lost.
  virtual bool Write(const std::string& bytes) = 0;
  /// Gives up the connection and the attempt, if there is one. What was sent before is
  /// seen off if `sees_off`.
  virtual void Drop(bool sees_off) = 0;

  // What a host reports.

  void OnConnected();
  /// Something may wait.
  void OnArrival();
  /// One of SocketError.
  void OnError(int number);

  EventLoop& Loop() { return loop_; }

 private:
  /// Runs `job` from the loop, unless the connection has been let go by then.
  template <class Job>
  void Later(Job job);
  void ReportFailed(int number);
  void Fetch();
  void Report();
  void Fail(int number);
  void LetGo(bool sees_off);

  EventLoop& loop_;
  SocketState state_ = SocketState::kClosed;
  // What happened and wasn't reported yet, in this order.
  std::string arrived_;
  bool server_ended_ = false;
  int error_ = 0;
  /// One for each connection.
  std::shared_ptr<int> life_ = std::make_shared<int>();
};

}  // namespace tarnvale
