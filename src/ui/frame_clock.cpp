#include "ui/frame_clock.h"

#include <algorithm>

namespace tarnvale {
namespace {

constexpr int kFrameMs = 17;

}  // namespace

FrameClock::FrameClock(TimerQueue& queue) : soon_(queue, 1, false), pace_(queue, kFrameMs, false) {
  soon_.Tick.Listen([this] { Draw(); });
  pace_.Tick.Listen([this] {
    pace_.Enabled = false;
    if (!waiting_.empty()) Draw();
  });
}

void FrameClock::Request(FrameClient& client) {
  if (client.is_waiting_) return;
  client.is_waiting_ = true;
  waiting_.push_back(&client);
  if (pace_.Enabled) {
    pace_.WakesLoop = true;
  } else {
    soon_.Enabled = true;
  }
}

void FrameClock::Forget(FrameClient& client) {
  client.is_waiting_ = false;
  std::erase(waiting_, &client);
}

void FrameClock::Hurry(FrameClient& client) {
  if (!client.is_waiting_) return;
  Forget(client);
  client.OnFrame();
}

// What is requested from now on waits for the next frame's moment. For that alone no loop
// wakes.
void FrameClock::Draw() {
  soon_.Enabled = false;
  pace_.WakesLoop = false;
  pace_.Enabled = true;
  // A client may request again, or others may go away, while one is being called.
  std::size_t left = waiting_.size();
  while (left-- > 0 && !waiting_.empty()) Hurry(*waiting_.front());
}

}  // namespace tarnvale
