#include "tests/hosts/contract/loopback.h"

#include <cstdint>

#ifdef _WIN32
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace tarnvale::testing {
namespace {

#ifdef _WIN32
using Number = SOCKET;
using Length = int;
constexpr int kShutSending = SD_SEND;
constexpr int kShutBoth = SD_BOTH;
constexpr int kNoSignal = 0;

// Numbers of sockets are small.
int NewSocket() {
  static WSADATA about;
  static const int started = ::WSAStartup(MAKEWORD(2, 2), &about);
  static_cast<void>(started);
  return static_cast<int>(::socket(AF_INET, SOCK_STREAM, 0));
}
#else
using Number = int;
using Length = socklen_t;
constexpr int kShutSending = SHUT_WR;
constexpr int kShutBoth = SHUT_RDWR;
constexpr int kNoSignal = MSG_NOSIGNAL;

int NewSocket() {
  return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
}
#endif

Number Native(int socket) {
  return static_cast<Number>(socket);
}

template <class Value>
void Set(int socket, int option, const Value& value) {
  ::setsockopt(Native(socket), SOL_SOCKET, option, reinterpret_cast<const char*>(&value),
               sizeof value);
}

sockaddr_in Loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

const sockaddr* Generic(const sockaddr_in& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

}  // namespace

int ListenOnLoopback(int port, int queue) {
  const int listener = NewSocket();
#ifndef _WIN32
  Set(listener, SO_REUSEADDR, 1);
#endif
  const sockaddr_in address = Loopback(port);
  if (::bind(Native(listener), Generic(address), sizeof address) == 0 &&
      ::listen(Native(listener), queue) == 0) {
    return listener;
  }
  CloseSocket(listener);
  return -1;
}

int BeginToConnect(int port) {
  const int client = NewSocket();
  SetNonBlocking(client);
  const sockaddr_in address = Loopback(port);
  static_cast<void>(::connect(Native(client), Generic(address), sizeof address));
  return client;
}

int PortOf(int socket) {
  sockaddr_in address{};
  Length length = sizeof address;
  ::getsockname(Native(socket), reinterpret_cast<sockaddr*>(&address), &length);
  return ntohs(address.sin_port);
}

int FreeLoopbackPort() {
  const LoopbackSocket listener(ListenOnLoopback(0));
  return PortOf(listener.Get());
}

bool AnswersOnLoopback(int port) {
  const LoopbackSocket client(NewSocket());
  const sockaddr_in address = Loopback(port);
  return ::connect(Native(client.Get()), Generic(address), sizeof address) == 0;
}

int ReceiveFrom(int socket, char* bytes, std::size_t count) {
  return static_cast<int>(::recv(Native(socket), bytes, count, 0));
}

int SendTo(int socket, const char* bytes, std::size_t count) {
  return static_cast<int>(::send(Native(socket), bytes, count, kNoSignal));
}

void LimitReceived(int socket, int bytes) {
  Set(socket, SO_RCVBUF, bytes);
}

void EndSendingOn(int socket) {
  ::shutdown(Native(socket), kShutSending);
}

void ResetSocket(int socket) {
  // Closing without lingering throws the connection away.
  const linger at_once{1, 0};
  Set(socket, SO_LINGER, at_once);
  CloseSocket(socket);
}

#ifdef _WIN32

int AcceptOn(int listener) {
  return static_cast<int>(::accept(Native(listener), nullptr, nullptr));
}

void SetNonBlocking(int socket) {
  u_long yes = 1;
  ::ioctlsocket(Native(socket), static_cast<long>(FIONBIO), &yes);
}

int LastSocketError() {
  const int error = ::WSAGetLastError();
  return error == WSAEWOULDBLOCK || error == WSAETIMEDOUT ? 0 : error;
}

void LimitReading(int socket, int limit_ms) {
  Set(socket, SO_RCVTIMEO, static_cast<DWORD>(limit_ms));
}

bool HangsUpWithin(int socket, int wait_ms) {
  fd_set readable{};
  readable.fd_count = 1;
  readable.fd_array[0] = Native(socket);
  timeval wait{wait_ms / 1000, wait_ms % 1000 * 1000};
  if (::select(0, &readable, nullptr, nullptr, &wait) <= 0) return false;
  char first = 0;
  if (::recv(Native(socket), &first, 1, MSG_PEEK) <= 0) return true;
  ::Sleep(static_cast<DWORD>(wait_ms));
  return false;
}

void CloseSocket(int socket) {
  ::closesocket(Native(socket));
}

// A thread that accepts isn't woken by the end of the listener.
void EndSocket(int socket) {
  int listens = 0;
  Length length = sizeof listens;
  ::getsockopt(Native(socket), SOL_SOCKET, SO_ACCEPTCONN, reinterpret_cast<char*>(&listens),
               &length);
  if (listens != 0) const LoopbackSocket knock(BeginToConnect(PortOf(socket)));
  ::shutdown(Native(socket), kShutBoth);
}

#else

void EndSocket(int socket) {
  ::shutdown(Native(socket), kShutBoth);
}

int AcceptOn(int listener) {
  return ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
}

void SetNonBlocking(int socket) {
  ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL) | O_NONBLOCK);
}

int LastSocketError() {
  // A stopped process that goes on has been interrupted, which is silence too.
  return errno == EAGAIN || errno == EINTR ? 0 : errno;
}

void LimitReading(int socket, int limit_ms) {
  Set(socket, SO_RCVTIMEO, timeval{.tv_sec = limit_ms / 1000, .tv_usec = limit_ms % 1000 * 1000});
}

bool HangsUpWithin(int socket, int wait_ms) {
  pollfd other{.fd = socket, .events = POLLRDHUP, .revents = 0};
  return ::poll(&other, 1, wait_ms) != 0;
}

void CloseSocket(int socket) {
  ::close(socket);
}

#endif

}  // namespace tarnvale::testing
