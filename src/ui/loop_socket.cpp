#include "ui/loop_socket.h"

#include <utility>

namespace tarnvale {

template <class Job>
void LoopSocket::Later(Job job) {
  loop_.Post([life = std::weak_ptr<int>(life_), job = std::move(job)] {
    if (!life.expired()) job();
  });
}

void LoopSocket::ReportFailed(int number) {
  Later([this, number] { Failed.Emit(number); });
}

void LoopSocket::Connect(const std::string& host, std::uint16_t port) {
  if (state_ == SocketState::kConnecting || state_ == SocketState::kConnected) {
    ReportFailed(kSocketInUse);
    return;
  }
  Close();
  state_ = SocketState::kConnecting;
  if (host.empty()) return Fail(kAddressNotAvailable);
  // The system would stop reading at a zero byte and find another host.
  if (host.find('\0') != std::string::npos) return Fail(kHostNotFound);
  Later([this, host, port] { Open(host, port); });
}

// Handlers may take long and yield: none runs within a call of the host's, which might
// then report nothing else.
void LoopSocket::OnConnected() {
  state_ = SocketState::kConnected;
  Later([this] { Connected.Emit(); });
}

void LoopSocket::OnArrival() {
  Later([this] { Report(); });
}

void LoopSocket::OnError(int number) {
  if (state_ == SocketState::kConnecting) return Fail(number);
  error_ = number;
  OnArrival();
}

// Takes what has come, as much as one report may hold.
void LoopSocket::Fetch() {
  if (server_ended_ || error_ != 0 || arrived_.size() >= kMostBytesAtOnce) return;
  switch (Look()) {
    case SocketWaiting::kNothing:
      break;
    case SocketWaiting::kBytes:
      arrived_ += Read(kMostBytesAtOnce - arrived_.size());
      break;
    case SocketWaiting::kEnd:
      server_ended_ = true;
      break;
    case SocketWaiting::kReset:
      error_ = kConnectionReset;
      break;
    case SocketWaiting::kLoss:
      error_ = kConnectionAborted;
      break;
  }
}

// An emission comes last: its handler may close or connect.
void LoopSocket::Report() {
  Fetch();
  if (!arrived_.empty()) {
    if (server_ended_ || error_ != 0) OnArrival();
    const std::string bytes = std::exchange(arrived_, {});
    DataArrived.Emit(bytes);
  } else if (error_ != 0) {
    Fail(error_);
  } else if (server_ended_ && state_ == SocketState::kConnected) {
    state_ = SocketState::kClosedByPeer;
    ClosedByPeer.Emit();
  }
}

void LoopSocket::Send(const std::string& bytes) {
  if (state_ != SocketState::kConnected && state_ != SocketState::kClosedByPeer) {
    ReportFailed(kWrongConnectionState);
    return;
  }
  // A write that fails throws away what the server said before it went.
  Fetch();
  if (error_ == 0 && !Write(bytes)) error_ = kConnectionAborted;
  if (!arrived_.empty() || error_ != 0) OnArrival();
}

void LoopSocket::Fail(int number) {
  LetGo(false);
  state_ = SocketState::kFailed;
  ReportFailed(number);
}

void LoopSocket::Close() {
  const bool is_open = state_ == SocketState::kConnected || state_ == SocketState::kClosedByPeer;
  LetGo(is_open && error_ == 0);
  state_ = SocketState::kClosed;
}

void LoopSocket::LetGo(bool sees_off) {
  Drop(sees_off);
  arrived_.clear();
  server_ended_ = false;
  error_ = 0;
  life_ = std::make_shared<int>();
}

}  // namespace tarnvale
