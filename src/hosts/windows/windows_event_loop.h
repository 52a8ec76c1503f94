// The event loop on the system's messages.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>

#include "hosts/windows/message_window.h"
#include "hosts/windows/threads.h"
#include "ui/event_loop.h"

namespace tarnvale {

/// Turns the messages of the thread that makes it, posted jobs and the program's timers.
/// Jobs and timers also run in the loops of the system, a message box's or a menu's: they
/// come as messages of a hidden window.
class WindowsEventLoop final : public EventLoop {
 public:
  WindowsEventLoop();
  ~WindowsEventLoop() override;

  void Yield() override;
  void WaitPass() override;
  int Run() override;
  /// Ends Run, and every loop of the system's within it: a box that waits gets no answer.
  /// Before Run: lets the coming Run return at once.
  void Quit(int code) override;
  bool IsEnding() const override { return quit_code_.has_value(); }
  void Post(std::function<void()> job) override;

  /// Emitted from the passes of a handler that goes on for more than a second after
  /// Quit, with its code: Run can't return before.
  Signal<int> Lingering;

  int Nesting() const override { return passes_; }
  TimerQueue& Timers() override { return timers_; }

 private:
  using Nanoseconds = std::chrono::nanoseconds;

  void OnMessage(UINT message);
  void Pass();
  bool Serve(const MSG& message);
  static void TakeQuitBack();
  void LookForLingering();
  void RunJob();
  void AnnounceJob();
  void RunDue();
  void SetAlarm();

  TimerQueue timers_;
  std::optional<Nanoseconds> next_due_;
  int passes_ = 0;
  Nanoseconds last_pass_{};
  std::optional<int> quit_code_;
  Nanoseconds quit_at_{};
  bool is_running_ = false;

  CriticalSection jobs_lock_;
  std::deque<std::function<void()>> jobs_;
  bool is_job_announced_ = false;  ///< a message for the first of them is on its way
  MessageWindow messages_{[this](UINT message, WPARAM, LPARAM) { OnMessage(message); }};
};

}  // namespace tarnvale
