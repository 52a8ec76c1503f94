#include "tests/hosts/curl/loopback.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tarnvale::testing {
namespace {

sockaddr_in Loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<in_port_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

}  // namespace

int ListenOnLoopback(int port, int queue) {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int yes = 1;
  ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  const sockaddr_in address = Loopback(port);
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  if (::bind(listener, generic, sizeof address) == 0 && ::listen(listener, queue) == 0) {
    return listener;
  }
  ::close(listener);
  return -1;
}

int BeginToConnect(int port) {
  const int client = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  const sockaddr_in address = Loopback(port);
  static_cast<void>(::connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address));
  return client;
}

int PortOf(int socket) {
  sockaddr_in address{};
  socklen_t length = sizeof address;
  ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length);
  return ntohs(address.sin_port);
}

int FreeLoopbackPort() {
  const int listener = ListenOnLoopback(0);
  const int port = PortOf(listener);
  ::close(listener);
  return port;
}

bool AnswersOnLoopback(int port) {
  const int client = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = Loopback(port);
  const bool connected =
      ::connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  ::close(client);
  return connected;
}

}  // namespace tarnvale::testing
