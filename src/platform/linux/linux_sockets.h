// Client sockets on the system's own.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/event_loop.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/farewells.h"
#include "platform/linux/host_lookup.h"
#include "platform/socket.h"
#include "platform/socket_watch.h"

namespace tarnvale {

class LinuxSockets final : public Sockets {
 public:
  /// Both must outlive it and its sockets.
  LinuxSockets(EventLoop& loop, SocketWatcher& watcher)
      : loop_(loop), watcher_(watcher), farewells_(watcher) {}

  std::unique_ptr<Socket> MakeSocket() override;

 private:
  EventLoop& loop_;
  SocketWatcher& watcher_;
  Farewells farewells_;
};

class LinuxSocket final : public Socket {
 public:
  /// All three must outlive it.
  LinuxSocket(EventLoop& loop, SocketWatcher& watcher, Farewells& farewells)
      : loop_(loop), watcher_(watcher), farewells_(farewells) {}
  /// As Close.
  ~LinuxSocket() override;

  void Connect(const std::string& host, std::uint16_t port) override;
  void Send(const std::string& bytes) override;
  void Close() override;
  SocketState State() const override { return state_; }

 private:
  // In the order in which a connection goes through them.
  void StartLookup(const std::string& host, std::uint16_t port);
  void TryAddresses(std::vector<NativeAddress> addresses);
  void TryNextAddress();
  int StartConnect(const NativeAddress& address);
  void LearnOutcome();
  void OnReady(SocketReadiness ready);
  void Want(SocketReadiness wanted);
  void BeginReading();
  void Receive();
  void SendWaiting();
  void OnSendError(int error);
  void Fail(int number);
  void LetGo();

  /// Runs `job` from the loop, unless the connection has been let go by then.
  template <class Job>
  void Later(Job job);
  void TellFailed(int number);

  EventLoop& loop_;
  SocketWatcher& watcher_;
  Farewells& farewells_;

  SocketState state_ = SocketState::kClosed;
  std::unique_ptr<HostLookup> lookup_;
  std::vector<NativeAddress> addresses_;
  std::size_t next_address_ = 0;
  Descriptor connection_;
  std::unique_ptr<SocketWatch> watch_;
  SocketReadiness wanted_;
  std::string unsent_;
  std::size_t sent_ = 0;  ///< of unsent_
  int send_error_ = 0;    ///< to be told when all that came was read
  /// One for each connection.
  std::shared_ptr<int> life_ = std::make_shared<int>();
};

}  // namespace tarnvale
