// Client sockets on Winsock.
#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>

#include "hosts/windows/message_window.h"
#include "hosts/windows/system_headers.h"
#include "hosts/windows/threads.h"
#include "ui/loop_socket.h"
#include "ui/timer.h"

struct addrinfo;

namespace tarnvale {

/// As getaddrinfo, for a connection. It may take long, on a thread of its own.
using LookUpCall =
    std::function<int(const std::string& host, const std::string& port, addrinfo** found)>;
int LookUp(const std::string& host, const std::string& port, addrinfo** found);

/// Takes what Winsock reports of a socket.
class SocketListener {
 public:
  virtual ~SocketListener() = default;
  /// `event` is one of FD_*. May end the watch.
  virtual void OnEvent(int event, int error) = 0;
};

/// A socket of the system's that doesn't block, and its events as messages. Each has a
/// number of its own, so that those of an older one, which may have had the same handle,
/// are nobody's.
class SocketWatch {
 public:
  SocketWatch();

  /// Events go to `listener`. Returns the number.
  UINT Begin(SOCKET socket, SocketListener& listener);
  void Move(UINT number, SocketListener& listener) { listeners_[number] = &listener; }
  void End(UINT number) { listeners_.erase(number); }

 private:
  std::optional<LRESULT> OnMessage(UINT number, LPARAM event);

  std::map<UINT, SocketListener*> listeners_;
  UINT last_ = 0;
  MessageWindow messages_;
};

/// One connection or attempt, and what the network hasn't taken of it. Closed when it goes.
class Connection {
 public:
  Connection(SocketWatch& watch, SOCKET socket, SocketListener& listener);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  SOCKET Get() const { return socket_; }
  void SetListener(SocketListener& listener) { watch_.Move(number_, listener); }

  SocketWaiting Look() const;
  std::string Read(std::size_t most) const;
  /// Sends this behind what waits, as far as that goes now. False for a lost connection.
  bool Write(const std::string& bytes);
  bool HasUnsent() const { return sent_ < unsent_.size(); }
  /// The server has ended its side, one way or another: no event reports what it said
  /// before.
  bool IsEnded() const { return is_ended_; }
  void NoteEnd() { is_ended_ = true; }

 private:
  SocketWatch& watch_;
  SOCKET socket_;
  UINT number_;
  std::string unsent_;
  std::size_t sent_ = 0;  ///< of the bytes in unsent_
  bool is_ended_ = false;
};

class Farewell;

/// Owns the connections that the program has closed and the server hasn't.
class Farewells {
 public:
  Farewells(EventLoop& loop, std::chrono::milliseconds limit);
  ~Farewells();
  void Add(std::unique_ptr<Connection> connection);
  void RemoveLater(const Farewell& farewell);

 private:
  friend class Farewell;
  EventLoop& loop_;
  std::chrono::milliseconds limit_;
  std::shared_ptr<int> life_ = std::make_shared<int>();
  std::list<Farewell> leaving_;
};

class WindowsSockets final : public Sockets {
 public:
  /// `loop` must outlive it and its sockets. A closed connection has
  /// `farewell_limit` to get what was sent to the server.
  explicit WindowsSockets(EventLoop& loop,
                          std::chrono::milliseconds farewell_limit = std::chrono::minutes(1),
                          LookUpCall look_up = LookUp)
      : loop_(loop), look_up_(std::move(look_up)), leaving_(loop, farewell_limit) {}

  std::unique_ptr<Socket> MakeSocket() override;

 private:
  EventLoop& loop_;
  LookUpCall look_up_;
  SocketWatch watch_;
  Farewells leaving_;
};

/// A name that is being looked up on a thread of its own.
struct HostSearch;

class WindowsSocket final : public LoopSocket, public SocketListener {
 public:
  /// All must outlive it; `leaving` takes the connections that it closes.
  WindowsSocket(EventLoop& loop, LookUpCall look_up, SocketWatch& watch, Farewells& leaving)
      : LoopSocket(loop), look_up_(std::move(look_up)), watch_(watch), leaving_(leaving) {}
  /// As Close.
  ~WindowsSocket() override { Close(); }

 private:
  void Open(const std::string& host, std::uint16_t port) override;
  SocketWaiting Look() override;
  std::string Read(std::size_t most) override;
  bool Write(const std::string& bytes) override { return connection_->Write(bytes); }
  void Drop(bool sees_off) override;

  void OnEvent(int event, int error) override;
  void OnFound();
  void TryNextAddress(int error);
  bool TryAddress(const addrinfo& address);

  LookUpCall look_up_;
  SocketWatch& watch_;
  Farewells& leaving_;
  std::shared_ptr<HostSearch> search_;
  const addrinfo* next_ = nullptr;  ///< of the addresses that were found
  std::unique_ptr<Connection> connection_;
};

}  // namespace tarnvale
