// What the event loops of all hosts share.
#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include "ui/event_loop.h"

namespace tarnvale {

/// A loop whose timers wake the program together, whose passes count as one when they
/// follow each other closely, and which reports a program that doesn't come to its end.
/// The host serves its events in Pump, and wakes itself for the timers.
class PacedLoop : public EventLoop {
 public:
  void Yield() final;
  void WaitPass() final;
  int Run() override;
  /// Ends Run. Before Run: lets the coming Run return at once.
  void Quit(int code) override;
  bool IsEnding() const final { return quit_code_.has_value(); }
  int Nesting() const override { return passes_; }
  TimerQueue& Timers() final { return timers_; }

  /// Emitted from the passes of a handler that goes on for more than a second after
  /// Quit, with its code: Run can't return before.
  Signal<int> Lingering;

 protected:
  using Milliseconds = std::chrono::milliseconds;
  using Nanoseconds = std::chrono::nanoseconds;

  explicit PacedLoop(std::function<Nanoseconds()> uptime);

  // The host's side.

  /// Serves the events that are pending. When there is none, it may sleep up to `wait`
  /// for one.
  virtual void Pump(Milliseconds wait) = 0;
  /// Serves events and timers until Quit.
  virtual void Serve() = 0;
  /// Has RunDue called after `wait`, in whatever loop runs then; none: not at all.
  virtual void StartAlarm(std::optional<Milliseconds> wait) = 0;
  /// The next due moment may have changed.
  virtual void OnRescheduled() {}

  // For the host.

  Nanoseconds Uptime() const { return uptime_(); }
  bool IsRunning() const { return is_running_; }
  void Pass(Milliseconds wait = Milliseconds::zero());
  void RunDue();
  /// Starts the alarm anew if it isn't set for the next due moment.
  void SetAlarm();
  /// The alarm went off and isn't set any more.
  void ForgetAlarm() { alarm_at_.reset(); }

 private:
  std::optional<Nanoseconds> NextDue();
  bool IsTimerDue();
  void LookForLingering();
  void LearnAnew();

  std::function<Nanoseconds()> uptime_;
  TimerQueue timers_;
  std::optional<Nanoseconds> next_due_;
  bool next_due_is_stale_ = true;
  std::optional<Nanoseconds> alarm_at_;
  int passes_ = 0;
  Nanoseconds last_pass_{};
  std::optional<int> quit_code_;
  Nanoseconds quit_at_{};
  bool is_running_ = false;
};

}  // namespace tarnvale
