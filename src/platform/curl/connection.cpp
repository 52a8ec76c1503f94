#include "platform/curl/connection.h"

#include <fcntl.h>
#include <linux/sockios.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace tarnvale {
namespace {

struct Address {
  sockaddr_storage storage{};
  socklen_t length = sizeof(sockaddr_storage);

  sockaddr* Get() { return reinterpret_cast<sockaddr*>(&storage); }
};

bool AskPeer(int fd, Address& peer) {
  return ::getpeername(fd, peer.Get(), &peer.length) == 0;
}

StreamTurn AfterFailure() {
  using Outcome = StreamTurn::Outcome;
  const bool later = errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
  return {later ? Outcome::kWouldWait : Outcome::kBroken, 0};
}

}  // namespace

Connection::Connection(int fd) : fd_(fd) {
  if (fd_ >= 0) ::fcntl(fd_, F_SETFL, ::fcntl(fd_, F_GETFL) | O_NONBLOCK);
}

StreamTurn Connection::Receive(std::span<char> bytes) {
  const ssize_t got = ::recv(fd_, bytes.data(), bytes.size(), 0);
  if (got < 0) return AfterFailure();
  if (got == 0) return {StreamTurn::Outcome::kClosed, 0};
  return {StreamTurn::Outcome::kMoved, static_cast<std::size_t>(got)};
}

StreamTurn Connection::Send(std::span<const char> bytes) {
  const ssize_t sent = ::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
  if (sent < 0) return AfterFailure();
  return {StreamTurn::Outcome::kMoved, static_cast<std::size_t>(sent)};
}

bool Connection::HasUnasked() const {
  char byte = 0;
  const ssize_t got = ::recv(fd_, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
  return got >= 0 || (errno != EAGAIN && errno != EWOULDBLOCK);
}

void Connection::EndSending() {
  ::shutdown(fd_, SHUT_WR);
}

std::size_t Connection::Unsent() const {
  int bytes = 0;
  if (::ioctl(fd_, SIOCOUTQ, &bytes) != 0) return 0;
  return static_cast<std::size_t>(bytes);
}

std::string Connection::PeerAddress() const {
  Address peer;
  std::array<char, NI_MAXHOST> text{};
  if (!AskPeer(fd_, peer) || ::getnameinfo(peer.Get(), peer.length, text.data(), text.size(),
                                           nullptr, 0, NI_NUMERICHOST) != 0) {
    return {};
  }
  return text.data();
}

bool Connection::PeerIsIpv6() const {
  Address peer;
  return AskPeer(fd_, peer) && peer.storage.ss_family == AF_INET6;
}

void Connection::Close() {
  if (const int fd = std::exchange(fd_, -1); fd >= 0) ::close(fd);
}

void Connection::Abort() {
  const linger at_once{.l_onoff = 1, .l_linger = 0};
  if (fd_ >= 0) ::setsockopt(fd_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
  Close();
}

}  // namespace tarnvale
