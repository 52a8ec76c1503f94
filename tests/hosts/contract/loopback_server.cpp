#include "tests/hosts/contract/loopback_server.h"

#include <array>
#include <stdexcept>

namespace tarnvale::testing {

LoopbackServer::LoopbackServer(std::uint16_t port) : listener_(ListenOnLoopback(port)) {
  if (!listener_) throw std::runtime_error("no server on the loopback address");
  SetNonBlocking(listener_.Get());
  port_ = static_cast<std::uint16_t>(PortOf(listener_.Get()));
}

bool LoopbackServer::Accept() {
  const int taken = AcceptOn(listener_.Get());
  if (taken < 0) return false;
  connection_.Take(taken);
  SetNonBlocking(taken);
  received_.clear();
  saw_end_ = false;
  read_error_ = 0;
  return true;
}

void LoopbackServer::Read() {
  if (!connection_ || saw_end_ || read_error_ != 0) return;
  std::array<char, 65536> bytes;
  for (;;) {
    const int count = ReceiveFrom(connection_.Get(), bytes.data(), bytes.size());
    if (count > 0) {
      received_.append(bytes.data(), static_cast<std::size_t>(count));
      continue;
    }
    if (count == 0) saw_end_ = true;
    if (count < 0) read_error_ = LastSocketError();
    return;
  }
}

std::size_t LoopbackServer::Say(const std::string& bytes) {
  const int count = SendTo(connection_.Get(), bytes.data(), bytes.size());
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

}  // namespace tarnvale::testing
