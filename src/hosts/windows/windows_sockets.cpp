#include "hosts/windows/windows_sockets.h"

#include <mstcpip.h>
#include <ws2tcpip.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <utility>

// Winsock reports bytes once and again when some were read, of room for more when a send
// found none, and of the server's end once, maybe before all it said was read.

namespace tarnvale {
namespace {

/// How much of a closed connection is still read.
constexpr std::size_t kMostOfFarewell = kMostBytesAtOnce;

// A quiet server has to show that it is there.
constexpr u_long kQuietMs = 60'000;
constexpr u_long kBetweenQuestionsMs = 15'000;

constexpr UINT kFirstNumber = MessageWindow::kFirstMessage;
constexpr UINT kNumbers = 0x3000;

// Makes an error of a link that died without a word. Without it a connection works all
// the same.
void KeepAlive(SOCKET socket) {
  tcp_keepalive values{1, kQuietMs, kBetweenQuestionsMs};
  DWORD none = 0;
  ::WSAIoctl(socket, SIO_KEEPALIVE_VALS, &values, sizeof values, nullptr, 0, &none, nullptr,
             nullptr);
}

// Chosen: what ends cleanly and has no other end any more was reset. A system below that
// isn't Windows doesn't say so otherwise.
bool HasPeer(SOCKET socket) {
  sockaddr_storage address;
  int length = sizeof address;
  return ::getpeername(socket, reinterpret_cast<sockaddr*>(&address), &length) == 0;
}

int NumberOf(int error) {
  constexpr std::array kReported = {kSocketAccessDenied, kAddressNotAvailable,  kNetworkDown,
                                    kNetworkUnreachable, kConnectionReset,      kNoBufferSpace,
                                    kConnectTimedOut,    kConnectionRefused,    kHostUnreachable,
                                    kHostNotFound,       kHostNotFoundTryAgain, kNameServerFailure,
                                    kNoAddressForName};
  const bool is_reported = std::find(kReported.begin(), kReported.end(), error) != kReported.end();
  return is_reported ? error : kConnectionAborted;
}

}  // namespace

int LookUp(const std::string& host, const std::string& port, addrinfo** found) {
  addrinfo wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  wanted.ai_protocol = IPPROTO_TCP;
  return ::getaddrinfo(host.c_str(), port.c_str(), &wanted, found);
}

SocketWatch::SocketWatch()
    : messages_([this](UINT number, WPARAM, LPARAM event) { return OnMessage(number, event); }) {
  WSADATA about;
  static const int started = ::WSAStartup(MAKEWORD(2, 2), &about);
  static_cast<void>(started);
}

UINT SocketWatch::Begin(SOCKET socket, SocketListener& listener) {
  do {
    last_ = (last_ + 1) % kNumbers;
  } while (listeners_.contains(kFirstNumber + last_));
  const UINT number = kFirstNumber + last_;
  listeners_[number] = &listener;
  ::WSAAsyncSelect(socket, messages_.Get(), number, FD_CONNECT | FD_READ | FD_WRITE | FD_CLOSE);
  return number;
}

std::optional<LRESULT> SocketWatch::OnMessage(UINT number, LPARAM event) {
  const auto found = listeners_.find(number);
  if (found == listeners_.end()) return std::nullopt;
  found->second->OnEvent(WSAGETSELECTEVENT(event), WSAGETSELECTERROR(event));
  return 0;
}

Connection::Connection(SocketWatch& watch, SOCKET socket, SocketListener& listener)
    : watch_(watch), socket_(socket), number_(watch.Begin(socket, listener)) {}

Connection::~Connection() {
  watch_.End(number_);
  ::closesocket(socket_);
}

SocketWaiting Connection::Look() const {
  char first = 0;
  const int count = ::recv(socket_, &first, 1, MSG_PEEK);
  if (count > 0) return SocketWaiting::kBytes;
  if (count == 0) return HasPeer(socket_) ? SocketWaiting::kEnd : SocketWaiting::kReset;
  const int error = ::WSAGetLastError();
  if (error == WSAEWOULDBLOCK) return SocketWaiting::kNothing;
  return error == WSAECONNRESET ? SocketWaiting::kReset : SocketWaiting::kLoss;
}

std::string Connection::Read(std::size_t most) const {
  std::string bytes(most, '\0');
  const int count = ::recv(socket_, bytes.data(), static_cast<int>(most), 0);
  bytes.resize(static_cast<std::size_t>(std::max(count, 0)));
  return bytes;
}

bool Connection::Write(const std::string& bytes) {
  constexpr std::size_t kMostAtOnce = 65536;
  unsent_ += bytes;
  while (HasUnsent()) {
    const std::size_t wanted = std::min(unsent_.size() - sent_, kMostAtOnce);
    const int count = ::send(socket_, unsent_.data() + sent_, static_cast<int>(wanted), 0);
    if (count < 0) return ::WSAGetLastError() == WSAEWOULDBLOCK;
    sent_ += static_cast<std::size_t>(count);
  }
  unsent_.clear();
  sent_ = 0;
  return true;
}

/// Sees a closed connection off: sends what still waits, ends the sending side, and throws
/// away what the server says until it hangs up. Closing at once would have the system
/// answer the server's next word with a reset, and the server lose what it hasn't read yet.
class Farewell final : private SocketListener {
 public:
  Farewell(Farewells& owner, std::unique_ptr<Connection> connection)
      : owner_(owner),
        connection_(std::move(connection)),
        limit_(owner.loop_.Timers(), static_cast<int>(owner.limit_.count()), true) {
    connection_->SetListener(*this);
    limit_.Tick.Listen([this] {
      // A timer doesn't go within its own tick.
      limit_.Enabled = false;
      End();
    });
  }

  void Advance() {
    SocketWaiting waiting = SocketWaiting::kEnd;
    while (heard_ < kMostOfFarewell && (waiting = connection_->Look()) == SocketWaiting::kBytes) {
      heard_ += connection_->Read(kMostOfFarewell - heard_).size();
      waiting = SocketWaiting::kEnd;
    }
    const bool is_lost = !connection_->Write({}) || waiting == SocketWaiting::kReset;
    // A server that has said all may still be reading.
    if (connection_->HasUnsent() && !is_lost) return;
    ::shutdown(connection_->Get(), SD_SEND);
    if (waiting != SocketWaiting::kNothing || is_lost) End();
  }

 private:
  void OnEvent(int, int) override { Advance(); }
  // The list isn't changed while it may be gone through.
  void End() {
    if (std::exchange(is_over_, true)) return;
    owner_.RemoveLater(*this);
  }

  Farewells& owner_;
  std::unique_ptr<Connection> connection_;
  std::size_t heard_ = 0;
  bool is_over_ = false;
  Timer limit_;
};

Farewells::Farewells(EventLoop& loop, std::chrono::milliseconds limit)
    : loop_(loop), limit_(limit) {}

Farewells::~Farewells() = default;

void Farewells::Add(std::unique_ptr<Connection> connection) {
  leaving_.emplace_back(*this, std::move(connection));
  leaving_.back().Advance();
}

void Farewells::RemoveLater(const Farewell& farewell) {
  loop_.Post([this, life = std::weak_ptr<int>(life_), gone = &farewell] {
    if (life.expired()) return;
    leaving_.remove_if([gone](const Farewell& each) { return &each == gone; });
  });
}

/// The thread may outlast the socket and the loop: it posts only while it is wanted.
struct HostSearch : std::enable_shared_from_this<HostSearch> {
  explicit HostSearch(EventLoop& its_loop) : loop(&its_loop) {}
  HostSearch(const HostSearch&) = delete;
  HostSearch& operator=(const HostSearch&) = delete;
  ~HostSearch() {
    if (found != nullptr) ::freeaddrinfo(found);
  }

  void GiveUp() {
    const std::lock_guard held(lock);
    loop = nullptr;
  }

  CriticalSection lock;
  EventLoop* loop;  ///< null once it was given up
  // Of the thread until it has posted.
  int error = 0;
  addrinfo* found = nullptr;
};

std::unique_ptr<Socket> WindowsSockets::MakeSocket() {
  return std::make_unique<WindowsSocket>(loop_, look_up_, watch_, leaving_);
}

void WindowsSocket::Open(const std::string& host, std::uint16_t port) {
  search_ = std::make_shared<HostSearch>(Loop());
  const bool is_begun = static_cast<bool>(
      StartThread([this, search = search_, look_up = look_up_, host, port = std::to_string(port)] {
        search->error = look_up(host, port, &search->found);
        const std::lock_guard held(search->lock);
        if (search->loop == nullptr) return;
        search->loop->Post([this, search] {
          if (search->loop != nullptr) OnFound();
        });
      }));
  if (!is_begun) OnError(kNoBufferSpace);
}

void WindowsSocket::OnFound() {
  next_ = search_->found;
  TryNextAddress(search_->error != 0 ? search_->error : WSAHOST_NOT_FOUND);
}

// `error` is what the last one failed with.
void WindowsSocket::TryNextAddress(int error) {
  connection_.reset();
  while (next_ != nullptr) {
    if (TryAddress(*std::exchange(next_, next_->ai_next))) return;
    error = ::WSAGetLastError();
  }
  OnError(NumberOf(error));
}

bool WindowsSocket::TryAddress(const addrinfo& address) {
  const SOCKET socket = ::socket(address.ai_family, address.ai_socktype, address.ai_protocol);
  if (socket == INVALID_SOCKET) return false;
  connection_ = std::make_unique<Connection>(watch_, socket, *this);
  const int length = static_cast<int>(address.ai_addrlen);
  return ::connect(socket, address.ai_addr, length) == 0 || ::WSAGetLastError() == WSAEWOULDBLOCK;
}

void WindowsSocket::OnEvent(int event, int error) {
  if (event == FD_CONNECT) {
    if (error != 0) return TryNextAddress(error);
    KeepAlive(connection_->Get());
    return OnConnected();
  }
  if (event == FD_CLOSE) connection_->NoteEnd();
  if (event != FD_WRITE) return OnArrival();
  if (!connection_->Write({})) OnError(kConnectionAborted);
}

SocketWaiting WindowsSocket::Look() {
  return connection_->Look();
}

std::string WindowsSocket::Read(std::size_t most) {
  if (connection_->IsEnded()) OnArrival();
  return connection_->Read(most);
}

void WindowsSocket::Drop(bool sees_off) {
  if (search_) search_->GiveUp();
  search_.reset();
  next_ = nullptr;
  if (sees_off) leaving_.Add(std::move(connection_));
  connection_.reset();
}

}  // namespace tarnvale
