// Timers that tick in the event loop.
//
// A timer never ticks inside its own handler, but others do when that handler
// yields. Ticks that could not be taken in time are not made up: however late,
// one is due at most. Enabling a timer starts its interval anew; enabling one
// that is enabled already changes nothing.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

#include "base/property.h"
#include "base/signal.h"

namespace tarnvale {

class TimerQueue;

class Timer {
 public:
  /// `interval_ms` at least 1. The queue must outlive the timer; a timer must
  /// not be destroyed in its own handler.
  Timer(TimerQueue& queue, int interval_ms, bool enabled);
  ~Timer();
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  int IntervalMs() const { return interval_ms_; }

  Property<bool> Enabled;
  /// Whether a sleeping loop wakes for it. One that doesn't wake the loop ticks
  /// when something else does, if it is due by then: for ticks without a visible effect.
  Property<bool> WakesLoop{true};
  Signal<> Tick;

 private:
  friend class TimerQueue;
  void Restart();

  TimerQueue& queue_;
  int interval_ms_;
  std::chrono::nanoseconds due_{};
  bool in_handler_ = false;
};

/// All timers of one event loop. The host gives the time and runs what is due.
class TimerQueue {
 public:
  using Nanoseconds = std::chrono::nanoseconds;

  /// `uptime` is the clock of all timers. `deliver` runs one handler: usually
  /// EventLoop::Deliver.
  TimerQueue(std::function<Nanoseconds()> uptime,
             std::function<void(const std::function<void()>&)> deliver);

  /// Ticks every timer that is due now, each once, earliest first. A handler
  /// may yield and so come back here.
  void RunDue();

  /// When the loop has to wake for a timer, on the clock of `uptime`; none when
  /// no timer that wakes it is enabled and outside its handler.
  std::optional<Nanoseconds> NextDue() const;

  /// Lets a host move due moments so that timers share them: all of a timer but
  /// the first since it was enabled, which comes after the very interval. `later`
  /// is given a due moment and the timer's interval in milliseconds and returns
  /// that moment or a later one. Where nothing is set, intervals are exact.
  void AlignWith(std::function<Nanoseconds(Nanoseconds due, int interval_ms)> later) {
    later_ = std::move(later);
  }

  /// Emitted when NextDue may have become earlier, and before each handler, so that a
  /// host can set its alarm anew.
  Signal<> Rescheduled;

 private:
  friend class Timer;
  void Add(Timer* timer) { timers_.push_back(timer); }
  void Remove(Timer* timer);
  bool CanTick(const Timer& timer) const { return timer.Enabled && !timer.in_handler_; }
  Timer* NextTimer(Nanoseconds horizon) const;
  void TickOne(Timer& timer);
  Nanoseconds Aligned(Nanoseconds due, const Timer& timer) const;

  std::function<Nanoseconds()> uptime_;
  std::function<void(const std::function<void()>&)> deliver_;
  std::function<Nanoseconds(Nanoseconds, int)> later_;
  std::vector<Timer*> timers_;
};

/// For TimerQueue::AlignWith: whole tenths of a second for intervals of whole tenths, so
/// that an idle program wakes once for all of its timers that are due in the same tenth.
TimerQueue::Nanoseconds OntoSharedMoments(TimerQueue::Nanoseconds due, int interval_ms);

}  // namespace tarnvale
