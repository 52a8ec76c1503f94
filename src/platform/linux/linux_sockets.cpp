#include "platform/linux/linux_sockets.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <cerrno>
#include <utility>

namespace tarnvale {
namespace {

/// How much of what waits is read in one pass.
constexpr std::size_t kMostAtOnce = 65536;

// A quiet server is asked whether it is there, and given up after some questions.
constexpr int kQuietSeconds = 60;
constexpr int kBetweenQuestionsSeconds = 15;
constexpr int kQuestions = 4;

int NumberOf(int error) {
  switch (error) {
    case EACCES:
    case EPERM:
      return kSocketAccessDenied;
    case EADDRNOTAVAIL:
    case EAFNOSUPPORT:
    case EINVAL:
      return kAddressNotAvailable;
    case ENETDOWN:
      return kNetworkDown;
    case ENETUNREACH:
      return kNetworkUnreachable;
    case ECONNRESET:
      return kConnectionReset;
    case ENOBUFS:
    case ENOMEM:
    case EMFILE:
    case ENFILE:
      return kNoBufferSpace;
    case ETIMEDOUT:
      return kConnectTimedOut;
    case ECONNREFUSED:
      return kConnectionRefused;
    case EHOSTUNREACH:
    case EHOSTDOWN:
      return kHostUnreachable;
    default:
      return kConnectionAborted;
  }
}

// What ended a connection that stood: its time-out isn't that of the connecting.
int NumberOfLoss(int error) {
  return error == ETIMEDOUT ? kConnectionAborted : NumberOf(error);
}

// Makes an error of a link that died without a word. Without it a connection
// works all the same.
void KeepAlive(int descriptor) {
  const auto set = [descriptor](int level, int option, int value) {
    ::setsockopt(descriptor, level, option, &value, sizeof value);
  };
  set(SOL_SOCKET, SO_KEEPALIVE, 1);
  set(IPPROTO_TCP, TCP_KEEPIDLE, kQuietSeconds);
  set(IPPROTO_TCP, TCP_KEEPINTVL, kBetweenQuestionsSeconds);
  set(IPPROTO_TCP, TCP_KEEPCNT, kQuestions);
}

int OutcomeOf(int descriptor) {
  int error = 0;
  socklen_t length = sizeof error;
  return ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &length) == 0 ? error : errno;
}

}  // namespace

std::unique_ptr<Socket> LinuxSockets::MakeSocket() {
  return std::make_unique<LinuxSocket>(loop_, watcher_, farewells_);
}

LinuxSocket::~LinuxSocket() {
  Close();
}

template <class Job>
void LinuxSocket::Later(Job job) {
  loop_.Post([life = std::weak_ptr<int>(life_), job = std::move(job)] {
    if (!life.expired()) job();
  });
}

void LinuxSocket::TellFailed(int number) {
  Later([this, number] { Failed.Emit(number); });
}

void LinuxSocket::Connect(const std::string& host, std::uint16_t port) {
  if (state_ == SocketState::kConnecting || state_ == SocketState::kConnected) {
    TellFailed(kSocketInUse);
    return;
  }
  Close();
  state_ = SocketState::kConnecting;
  StartLookup(host, port);
}

void LinuxSocket::StartLookup(const std::string& host, std::uint16_t port) {
  if (host.empty()) return Fail(kAddressNotAvailable);
  std::vector<NativeAddress> numeric = NumericAddress(host, port);
  if (!numeric.empty()) return TryAddresses(std::move(numeric));
  lookup_ = HostLookup::Start(watcher_, host, port, [this](const HostAddresses& found) {
    lookup_.reset();
    if (found.error != 0) return Fail(found.error);
    TryAddresses(found.addresses);
  });
  if (!lookup_) Fail(kNoBufferSpace);
}

void LinuxSocket::TryAddresses(std::vector<NativeAddress> addresses) {
  addresses_ = std::move(addresses);
  next_address_ = 0;
  TryNextAddress();
}

// One after the other; what is told of the last one is told of all.
void LinuxSocket::TryNextAddress() {
  int error = 0;
  while (next_address_ < addresses_.size()) {
    error = StartConnect(addresses_[next_address_++]);
    if (error == 0) return;
  }
  Fail(NumberOf(error));
}

// 0, or an error of the system.
int LinuxSocket::StartConnect(const NativeAddress& address) {
  watch_.reset();
  connection_ = Descriptor(
      ::socket(address.storage.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!connection_) return errno;
  KeepAlive(connection_.Get());
  // The one way to hand an address to the system.
  const auto* generic = reinterpret_cast<const sockaddr*>(&address.storage);
  if (::connect(connection_.Get(), generic, address.length) != 0 && errno != EINPROGRESS) {
    return errno;
  }
  watch_ = watcher_.Watch(connection_.Get(), [this](SocketReadiness ready) { OnReady(ready); });
  Want({.writable = true});
  return 0;
}

void LinuxSocket::Want(SocketReadiness wanted) {
  wanted_ = wanted;
  watch_->Want(wanted);
}

void LinuxSocket::OnReady(SocketReadiness ready) {
  if (state_ == SocketState::kConnecting) return LearnOutcome();
  ready.writable ? SendWaiting() : Receive();
}

void LinuxSocket::LearnOutcome() {
  Want({});
  const int error = OutcomeOf(connection_.Get());
  if (error != 0 && next_address_ < addresses_.size()) return TryNextAddress();
  if (error != 0) return Fail(NumberOf(error));
  state_ = SocketState::kConnected;
  // Its handler may take long: not from within the watch.
  Later([this] { BeginReading(); });
}

// Nothing that came is told before the connection itself.
void LinuxSocket::BeginReading() {
  Want({.readable = true, .writable = wanted_.writable});
  Connected.Emit();
}

// An emission is the last deed: its handler may close or connect.
void LinuxSocket::Receive() {
  std::string bytes(kMostAtOnce, '\0');
  const ssize_t count = ::recv(connection_.Get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (count > 0) {
    bytes.resize(static_cast<std::size_t>(count));
    loop_.Deliver([&] { DataArrived.Emit(bytes); });
    return;
  }
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  const int error = count < 0 ? errno : send_error_;
  if (error != 0) return Fail(NumberOfLoss(error));
  Want({.writable = wanted_.writable});
  state_ = SocketState::kClosedByPeer;
  loop_.Deliver([&] { ClosedByPeer.Emit(); });
}

void LinuxSocket::Send(const std::string& bytes) {
  if (state_ != SocketState::kConnected && state_ != SocketState::kClosedByPeer) {
    TellFailed(kWrongConnectionState);
    return;
  }
  if (send_error_ != 0) return;
  unsent_ += bytes;
  SendWaiting();
}

void LinuxSocket::SendWaiting() {
  while (sent_ < unsent_.size()) {
    const ssize_t count = ::send(connection_.Get(), unsent_.data() + sent_, unsent_.size() - sent_,
                                 MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno != EAGAIN) return OnSendError(errno);
    if (count < 0) {
      Want({.readable = wanted_.readable, .writable = true});
      return;
    }
    sent_ += static_cast<std::size_t>(count);
  }
  unsent_.clear();
  sent_ = 0;
  Want({.readable = wanted_.readable});
}

void LinuxSocket::OnSendError(int error) {
  const bool peer_has_gone = error == EPIPE || error == ECONNRESET;
  // What the server said before it went is read, and told, first.
  if (!peer_has_gone || !wanted_.readable) return Fail(NumberOfLoss(error));
  send_error_ = error;
  unsent_.clear();
  sent_ = 0;
  Want({.readable = true});
}

void LinuxSocket::Fail(int number) {
  LetGo();
  state_ = SocketState::kFailed;
  TellFailed(number);
}

void LinuxSocket::Close() {
  watch_.reset();
  const bool says_farewell =
      (state_ == SocketState::kConnected || state_ == SocketState::kClosedByPeer) &&
      send_error_ == 0;
  if (says_farewell) farewells_.Take(std::move(connection_), unsent_.substr(sent_));
  LetGo();
  state_ = SocketState::kClosed;
}

void LinuxSocket::LetGo() {
  watch_.reset();
  wanted_ = {};
  lookup_.reset();
  connection_.Close();
  unsent_.clear();
  sent_ = 0;
  send_error_ = 0;
  life_ = std::make_shared<int>();
}

}  // namespace tarnvale
