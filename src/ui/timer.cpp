#include "ui/timer.h"

#include <algorithm>
#include <numeric>

namespace tarnvale {
namespace {

/// No timer ticks more often than this, whatever its interval.
constexpr int kResolutionMs = 10;

}  // namespace

Timer::Timer(TimerQueue& queue, int interval_ms, bool enabled)
    : Enabled(enabled), queue_(queue), interval_ms_(interval_ms) {
  queue_.Add(this);
  Enabled.Changed.Listen([this] {
    if (Enabled) Restart();
  });
  WakesLoop.Changed.Listen([this] { queue_.Rescheduled.Emit(); });
  if (enabled) Restart();
}

Timer::~Timer() {
  queue_.Remove(this);
}

void Timer::Restart() {
  due_ = queue_.uptime_() + std::chrono::milliseconds(interval_ms_);
  queue_.Rescheduled.Emit();
}

TimerQueue::TimerQueue(std::function<Nanoseconds()> uptime,
                       std::function<void(const std::function<void()>&)> deliver)
    : uptime_(std::move(uptime)), deliver_(std::move(deliver)) {}

void TimerQueue::Remove(Timer* timer) {
  std::erase(timers_, timer);
}

TimerQueue::Nanoseconds TimerQueue::Aligned(Nanoseconds due, const Timer& timer) const {
  return later_ ? later_(due, timer.interval_ms_) : due;
}

Timer* TimerQueue::NextTimer(Nanoseconds horizon) const {
  Timer* next = nullptr;
  for (Timer* timer : timers_) {
    if (!CanTick(*timer) || timer->due_ > horizon) continue;
    if (next == nullptr || timer->due_ < next->due_) next = timer;
  }
  return next;
}

std::optional<TimerQueue::Nanoseconds> TimerQueue::NextDue() const {
  std::optional<Nanoseconds> next;
  for (const Timer* timer : timers_) {
    if (!timer->WakesLoop || !CanTick(*timer)) continue;
    if (!next || timer->due_ < *next) next = timer->due_;
  }
  return next;
}

void TimerQueue::RunDue() {
  // The horizon stands still, so that a pass ends even if its handlers take
  // longer than the shortest interval.
  const Nanoseconds horizon = uptime_();
  while (Timer* timer = NextTimer(horizon)) TickOne(*timer);
}

void TimerQueue::TickOne(Timer& timer) {
  const Nanoseconds interval = std::chrono::milliseconds(timer.interval_ms_);
  const Nanoseconds now = uptime_();
  timer.due_ += interval;
  if (timer.due_ <= now) timer.due_ = now + interval;
  timer.due_ = Aligned(timer.due_, timer);
  timer.in_handler_ = true;
  // The handler may wait in a loop of the host's.
  Rescheduled.Emit();
  deliver_([&] { timer.Tick.Emit(); });
  timer.in_handler_ = false;
  Rescheduled.Emit();
}

TimerQueue::Nanoseconds OntoSharedMoments(TimerQueue::Nanoseconds due, int interval_ms) {
  const TimerQueue::Nanoseconds grid =
      std::chrono::milliseconds(std::max(std::gcd(interval_ms, 100), kResolutionMs));
  return (due + grid - TimerQueue::Nanoseconds(1)) / grid * grid;
}

}  // namespace tarnvale
