#include "tests/support/fake_network.h"

#include <algorithm>
#include <utility>

namespace tarnvale::testing {

class FakeSocket final : public Socket {
 public:
  explicit FakeSocket(FakeNetwork& network) : network_(network) {}
  ~FakeSocket() override { Close(); }

  void Connect(const std::string& host, std::uint16_t port) override {
    network_.requested_.push_back(host + ":" + std::to_string(port));
    if (state_ == SocketState::kConnecting || state_ == SocketState::kConnected) {
      ReportFailed(kSocketInUse);
      return;
    }
    Close();
    state_ = SocketState::kConnecting;
    FakeServer* server = network_.Find(host, port);
    if (host.empty()) return Fail(kAddressNotAvailable);
    if (server == nullptr) {
      return Fail(network_.HasHost(host) ? kConnectionRefused : kHostNotFound);
    }
    if (server->fails_with != 0) return Fail(server->fails_with);
    if (!server->never_answers) Later([this, server] { Accept(*server); });
  }

  void Send(const std::string& bytes) override {
    if (state_ != SocketState::kConnected && state_ != SocketState::kClosedByPeer) {
      ReportFailed(kWrongConnectionState);
      return;
    }
    if (connection_->hung_up_) {
      if (sent_in_vain_) return Fail(kConnectionAborted);
      sent_in_vain_ = true;
      return;
    }
    connection_->chunks_.push_back({network_.clock_.Uptime(), bytes});
    if (server_->on_bytes) server_->on_bytes(*connection_, bytes);
  }

  void Close() override {
    LetGo();
    state_ = SocketState::kClosed;
  }

  SocketState State() const override { return state_; }

  // What the server does.
  void PeerSays(const std::string& bytes) { DataArrived.Emit(bytes); }
  void PeerEnds() {
    if (state_ != SocketState::kConnected) return;
    state_ = SocketState::kClosedByPeer;
    ClosedByPeer.Emit();
  }
  void PeerResets() { Fail(kConnectionReset); }

 private:
  void Accept(FakeServer& server) {
    state_ = SocketState::kConnected;
    server_ = &server;
    connection_ = std::shared_ptr<FakeConnection>(new FakeConnection(network_));
    connection_->socket_ = this;
    server.connections_.push_back(connection_);
    if (server.on_connect) server.on_connect(*connection_);
    Connected.Emit();
  }

  void Fail(int number) {
    LetGo();
    state_ = SocketState::kFailed;
    ReportFailed(number);
  }
  void ReportFailed(int number) {
    Later([this, number] { Failed.Emit(number); });
  }

  void LetGo() {
    if (connection_) {
      connection_->socket_ = nullptr;
      connection_->ended_ = true;
    }
    connection_.reset();
    sent_in_vain_ = false;
    life_ = std::make_shared<int>();
  }

  void Later(std::function<void()> job) {
    network_.loop_.Post([life = std::weak_ptr<int>(life_), job = std::move(job)] {
      if (!life.expired()) job();
    });
  }

  FakeNetwork& network_;
  FakeServer* server_ = nullptr;
  SocketState state_ = SocketState::kClosed;
  std::shared_ptr<FakeConnection> connection_;
  bool sent_in_vain_ = false;
  std::shared_ptr<int> life_ = std::make_shared<int>();
};

std::string FakeConnection::Text() const {
  std::string text;
  for (const Chunk& chunk : chunks_) text += chunk.bytes;
  return text;
}

// The connection lives as long as its server; a socket that is no longer connected hears
// nothing.
void FakeConnection::Later(Nanoseconds after, std::function<void(FakeSocket&)> act) {
  network_.Later(after, [this, act = std::move(act)] {
    if (socket_ != nullptr) act(*socket_);
  });
}

void FakeConnection::Say(const std::string& bytes, Nanoseconds after) {
  for (std::size_t at = 0; at < bytes.size(); at += kMostBytesAtOnce) {
    Later(after, [part = bytes.substr(at, kMostBytesAtOnce)](FakeSocket& socket) {
      socket.PeerSays(part);
    });
  }
}

void FakeConnection::EndSending(Nanoseconds after) {
  Later(after, [](FakeSocket& socket) { socket.PeerEnds(); });
}

void FakeConnection::HangUp(Nanoseconds after) {
  Later(after, [this](FakeSocket& socket) {
    hung_up_ = true;
    socket.PeerEnds();
  });
}

void FakeConnection::Reset(Nanoseconds after) {
  Later(after, [](FakeSocket& socket) { socket.PeerResets(); });
}

FakeServer& FakeNetwork::AddServer(const std::string& host, std::uint16_t port) {
  listeners_.push_back({host, port, std::make_unique<FakeServer>()});
  return *listeners_.back().server;
}

std::unique_ptr<Socket> FakeNetwork::MakeSocket() {
  return std::make_unique<FakeSocket>(*this);
}

FakeServer* FakeNetwork::Find(const std::string& host, std::uint16_t port) {
  for (const Listener& listener : listeners_) {
    if (listener.host == host && listener.port == port) return listener.server.get();
  }
  return nullptr;
}

bool FakeNetwork::HasHost(const std::string& host) const {
  return std::any_of(listeners_.begin(), listeners_.end(),
                     [&](const Listener& listener) { return listener.host == host; });
}

void FakeNetwork::Later(std::chrono::nanoseconds after, std::function<void()> job) {
  if (after <= std::chrono::nanoseconds::zero()) return loop_.Post(std::move(job));
  const auto ms = std::chrono::ceil<std::chrono::milliseconds>(after).count();
  Timer& timer = timers_.emplace_back(loop_.Timers(), static_cast<int>(ms), true);
  timer.Tick.Listen([&timer, job = std::move(job)] {
    timer.Enabled = false;
    job();
  });
}

}  // namespace tarnvale::testing
