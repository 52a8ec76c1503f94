#include "tests/hosts/contract/loopback_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <stdexcept>

namespace tarnvale::testing {
namespace {

sockaddr* Generic(sockaddr_in& address) {
  return reinterpret_cast<sockaddr*>(&address);
}

}  // namespace

LoopbackServer::LoopbackServer(std::uint16_t port)
    : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  socklen_t length = sizeof address;
  if (::bind(listener_.Get(), Generic(address), length) != 0 || ::listen(listener_.Get(), 8) != 0 ||
      ::getsockname(listener_.Get(), Generic(address), &length) != 0) {
    throw std::runtime_error("no server on the loopback address");
  }
  port_ = ntohs(address.sin_port);
}

bool LoopbackServer::Accept() {
  Descriptor taken(::accept4(listener_.Get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (!taken) return false;
  connection_ = std::move(taken);
  received_.clear();
  saw_end_ = false;
  read_error_ = 0;
  return true;
}

void LoopbackServer::Read() {
  if (!connection_ || saw_end_ || read_error_ != 0) return;
  char bytes[65536];
  for (;;) {
    const ssize_t count = ::recv(connection_.Get(), bytes, sizeof bytes, MSG_DONTWAIT);
    if (count > 0) {
      received_.append(bytes, static_cast<std::size_t>(count));
      continue;
    }
    if (count == 0) saw_end_ = true;
    if (count < 0 && errno != EAGAIN) read_error_ = errno;
    return;
  }
}

std::size_t LoopbackServer::Say(const std::string& bytes) {
  const ssize_t count =
      ::send(connection_.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void LoopbackServer::EndSending() {
  ::shutdown(connection_.Get(), SHUT_WR);
}

void LoopbackServer::HangUp() {
  connection_.Close();
}

void LoopbackServer::Reset() {
  // Closing without lingering throws the connection away.
  const linger at_once{1, 0};
  ::setsockopt(connection_.Get(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
  connection_.Close();
}

}  // namespace tarnvale::testing
