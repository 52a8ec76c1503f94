#include "platform/curl/control_channel.h"

#include <array>
#include <cstddef>

namespace tarnvale {
namespace {

constexpr std::size_t kReadBytes = 16384;

}  // namespace

bool ControlChannel::Flush() {
  const StreamTurn turn = socket_.Send(unsent_);
  if (turn.outcome == StreamTurn::Outcome::kBroken) return false;
  unsent_.erase(0, turn.bytes);
  return true;
}

bool ControlChannel::Read() {
  std::array<char, kReadBytes> bytes{};
  const StreamTurn turn = socket_.Receive(bytes);
  if (turn.outcome == StreamTurn::Outcome::kWouldWait) return true;
  if (turn.outcome != StreamTurn::Outcome::kMoved) return false;
  replies_.Feed({bytes.data(), turn.bytes});
  return true;
}

}  // namespace tarnvale
