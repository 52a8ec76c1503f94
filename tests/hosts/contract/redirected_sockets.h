// Sockets whose connections end at another port of this machine.
#pragma once

#include <memory>

#include "platform/socket.h"

namespace tarnvale::testing {

/// Leads each connection to one port of the loopback address, whatever port was
/// requested: a test can't count on the port of mail being free.
class RedirectedSockets final : public Sockets {
 public:
  RedirectedSockets(Sockets& real, std::uint16_t port) : real_(real), port_(port) {}

  std::unique_ptr<Socket> MakeSocket() override {
    return std::make_unique<Redirected>(real_.MakeSocket(), port_);
  }

 private:
  class Redirected final : public Socket {
   public:
    Redirected(std::unique_ptr<Socket> real, std::uint16_t port)
        : real_(std::move(real)), port_(port) {
      real_->Connected.Listen([this] { Connected.Emit(); });
      real_->DataArrived.Listen([this](const std::string& bytes) { DataArrived.Emit(bytes); });
      real_->ClosedByPeer.Listen([this] { ClosedByPeer.Emit(); });
      real_->Failed.Listen([this](int number) { Failed.Emit(number); });
    }
    void Connect(const std::string&, std::uint16_t) override { real_->Connect("localhost", port_); }
    void Send(const std::string& bytes) override { real_->Send(bytes); }
    void Close() override { real_->Close(); }
    SocketState State() const override { return real_->State(); }

   private:
    std::unique_ptr<Socket> real_;
    std::uint16_t port_;
  };

  Sockets& real_;
  std::uint16_t port_;
};

}  // namespace tarnvale::testing
