// A connected socket that closes itself.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <utility>

namespace tarnvale {

/// What one attempt to move bytes came to.
struct StreamTurn {
  enum class Outcome { kMoved, kWouldWait, kClosed, kBroken };

  Outcome outcome = Outcome::kWouldWait;
  std::size_t bytes = 0;
};

/// Never blocks and raises nothing.
class Connection {
 public:
  Connection() = default;
  /// Takes over `fd`; -1 stands for none.
  explicit Connection(int fd);
  Connection(Connection&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Connection& operator=(Connection&& other) noexcept {
    if (this != &other) {
      Close();
      fd_ = std::exchange(other.fd_, -1);
    }
    return *this;
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() { Close(); }

  explicit operator bool() const { return fd_ >= 0; }
  int Get() const { return fd_; }

  /// kClosed: the other end sends no more.
  StreamTurn Receive(std::span<char> bytes);
  StreamTurn Send(std::span<const char> bytes);

  /// True when something came in that was not asked for, be it the end.
  bool HasUnasked() const;
  /// Tells the other end that no more is sent.
  void EndSending();
  /// Bytes that were sent and not taken yet by the other end.
  std::size_t Unsent() const;
  /// The other end's address as curl takes it, without the port; empty when
  /// there is none any more.
  std::string PeerAddress() const;
  bool PeerIsIpv6() const;

  void Close();
  /// Closes so that the other end sees an abort and no regular end.
  void Abort();

 private:
  int fd_ = -1;
};

}  // namespace tarnvale
