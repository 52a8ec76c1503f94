// The event loop on Qt's.
#pragma once

#include <QEventLoop>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

#include "ui/event_loop.h"

namespace tarnvale {

/// Turns Qt's events and the program's timers. The timers tick from whatever
/// loop of Qt is running: the main one, a message box's, a menu's, a yield.
class QtEventLoop final : public EventLoop {
 public:
  /// A QApplication must exist and outlive it.
  QtEventLoop();
  ~QtEventLoop() override;

  void Yield() override;
  void WaitPass() override;
  int Run() override;
  /// Ends Run, and every message box and menu that is open. Before Run: lets the
  /// coming Run return at once.
  void Quit(int code) override;
  bool IsEnding() const override { return quit_code_.has_value(); }
  void Post(std::function<void()> job) override;

  /// Emitted from the passes of a handler that goes on for more than a second after
  /// Quit, with its code: Run can't return before.
  Signal<int> Lingering;

  int Nesting() const override;
  TimerQueue& Timers() override { return timers_; }

 private:
  using Nanoseconds = std::chrono::nanoseconds;

  static Nanoseconds Uptime();
  void Pass(QEventLoop::ProcessEventsFlags flags);
  void RunDue();
  void LearnNextDue();
  void LookForLingering();
  void SetAlarm();

  TimerQueue timers_;
  std::optional<Nanoseconds> next_due_;
  bool next_due_is_stale_ = true;
  std::optional<Nanoseconds> alarm_at_;
  int passes_ = 0;
  Nanoseconds last_pass_{};
  std::optional<int> quit_code_;
  Nanoseconds quit_at_{};
  bool running_ = false;
  QTimer alarm_;
  QTimer limit_;
  QObject receiver_;
};

}  // namespace tarnvale
