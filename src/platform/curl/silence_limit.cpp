#include "platform/curl/silence_limit.h"

#include <algorithm>
#include <utility>

namespace tarnvale {
namespace {

// Looks taken in the time of one limit: what moved late is seen late by as much.
constexpr int kLooks = 16;
constexpr std::chrono::milliseconds kLongestWait{10000};

}  // namespace

SilenceLimit::SilenceLimit(SocketWatcher& watcher, std::function<bool()> moves,
                           std::function<void()> ended)
    : moves_(std::move(moves)),
      ended_(std::move(ended)),
      alarm_(watcher.NewAlarm([this] { Look(); })) {}

void SilenceLimit::Begin(std::int32_t seconds) {
  limit_ = std::chrono::seconds(seconds);
  Touch();
  if (seconds == 0) {
    alarm_->Clear();
  } else {
    SetAlarm();
  }
}

void SilenceLimit::Stop() {
  alarm_->Clear();
}

void SilenceLimit::Look() {
  if (moves_()) Touch();
  if (Clock::now() - moved_at_ >= limit_) {
    ended_();
  } else {
    SetAlarm();
  }
}

void SilenceLimit::SetAlarm() {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(moved_at_ + limit_ - Clock::now());
  alarm_->Set(
      std::clamp(left, std::chrono::milliseconds(1), std::min(limit_ / kLooks, kLongestWait)));
}

}  // namespace tarnvale
