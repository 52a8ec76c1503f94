#include "hosts/qt/frame_clock.h"

#include <algorithm>

namespace tarnvale {
namespace {

constexpr std::chrono::milliseconds kFrame{17};

}  // namespace

FrameClock::FrameClock() {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Tick(); });
}

void FrameClock::Request(FrameClient& client) {
  if (client.is_waiting_) return;
  client.is_waiting_ = true;
  waiting_.push_back(&client);
  if (timer_.isActive()) return;
  const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now() - last_frame_);
  timer_.start(std::clamp(kFrame - passed, std::chrono::milliseconds::zero(), kFrame));
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

void FrameClock::Tick() {
  last_frame_ = std::chrono::steady_clock::now();
  // A client may request again, or others may go away, while one is being called.
  std::size_t left = waiting_.size();
  while (left-- > 0 && !waiting_.empty()) Hurry(*waiting_.front());
}

}  // namespace tarnvale
