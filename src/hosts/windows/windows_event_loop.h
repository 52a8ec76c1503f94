// The event loop on the system's messages.
#pragma once

#include <deque>
#include <functional>
#include <optional>

#include "hosts/windows/message_window.h"
#include "hosts/windows/threads.h"
#include "ui/paced_loop.h"

namespace tarnvale {

/// Turns the messages of the thread that makes it, posted jobs and the program's timers.
/// Jobs and timers also run in the loops of the system, a message box's or a menu's: they
/// come as messages of a hidden window.
class WindowsEventLoop final : public PacedLoop {
 public:
  WindowsEventLoop();
  ~WindowsEventLoop() override;

  int Run() override;
  /// Ends every loop of the system's within Run as well: a box that waits gets no answer.
  void Quit(int code) override;
  void Post(std::function<void()> job) override;

 private:
  void Pump(Milliseconds wait) override;
  void Serve() override;
  void StartAlarm(std::optional<Milliseconds> wait) override;
  void OnRescheduled() override { SetAlarm(); }

  std::optional<LRESULT> OnMessage(UINT message);
  bool Dispatch(const MSG& message);
  static void TakeQuitBack();
  void RunJob();
  void AnnounceJob();

  CriticalSection jobs_lock_;
  std::deque<std::function<void()>> jobs_;
  bool is_job_announced_ = false;  ///< a message for the first of them is on its way
  MessageWindow messages_{[this](UINT message, WPARAM, LPARAM) { return OnMessage(message); }};
};

}  // namespace tarnvale
