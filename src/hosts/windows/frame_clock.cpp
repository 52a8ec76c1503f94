#include "hosts/windows/frame_clock.h"

#include <algorithm>

namespace tarnvale {
namespace {

constexpr int kFrameMs = 17;

}  // namespace

FrameClock::FrameClock(TimerQueue& queue) : timer_(queue, kFrameMs, false) {
  timer_.Tick.Listen([this] { Tick(); });
}

void FrameClock::Request(FrameClient& client) {
  if (client.is_waiting_) return;
  client.is_waiting_ = true;
  waiting_.push_back(&client);
  timer_.Enabled = true;
}

void FrameClock::Forget(FrameClient& client) {
  client.is_waiting_ = false;
  std::erase(waiting_, &client);
}

void FrameClock::Tick() {
  timer_.Enabled = false;
  // A client may ask again, or others may go away, while one is being called.
  std::size_t left = waiting_.size();
  while (left-- > 0 && !waiting_.empty()) {
    FrameClient& client = *waiting_.front();
    Forget(client);
    client.OnFrame();
  }
}

}  // namespace tarnvale
