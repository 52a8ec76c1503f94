// A machine without a desktop, for commands and for programs that measure.
#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <thread>
#include <utility>

#include "base/failure.h"
#include "platform/no_ftp_transport.h"
#include "ui/machine.h"

namespace tarnvale {

/// A loop whose yields cost what the program's do while nobody touches its
/// windows.
class IdleLoop : public EventLoop {
 public:
  void Yield() override {
    constexpr std::chrono::milliseconds kPassInterval{2};
    const std::chrono::nanoseconds now = Now();
    if (now - last_pass_ < kPassInterval) return;
    last_pass_ = now;
    for (auto jobs = TakeJobs(); auto& job : jobs) Deliver(job);
    timers_.RunDue();
  }
  void WaitPass() override {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    Yield();
  }
  int Run() override { return 0; }
  void Quit(int) override {}
  bool IsEnding() const override { return false; }
  int Nesting() const override { return 1; }
  void Post(std::function<void()> job) override {
    const Lock lock(jobs_lock_);
    jobs_.push_back(std::move(job));
  }
  TimerQueue& Timers() override { return timers_; }

 private:
  // Held for a moment by few; not every compiler for Windows has a mutex.
  class Lock {
   public:
    explicit Lock(std::atomic_flag& flag) : flag_(flag) {
      while (flag_.test_and_set(std::memory_order_acquire)) std::this_thread::yield();
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() { flag_.clear(std::memory_order_release); }

   private:
    std::atomic_flag& flag_;
  };

  static std::chrono::nanoseconds Now() {
    return std::chrono::steady_clock::now().time_since_epoch();
  }

  std::deque<std::function<void()>> TakeJobs() {
    const Lock lock(jobs_lock_);
    return std::exchange(jobs_, {});
  }

  TimerQueue timers_{[] { return Now(); }, [this](const auto& handler) { Deliver(handler); }};
  std::atomic_flag jobs_lock_;
  std::deque<std::function<void()>> jobs_;
  std::chrono::nanoseconds last_pass_{};
};

/// Nobody is there to answer, to look, or to choose: everything raises 5.
class NoDesktop final : public MessageBoxes,
                        public WindowHost,
                        public FileDialogs,
                        public NotificationArea,
                        public Sockets {
 public:
  BoxAnswer Show(const BoxRequest&) override { Refuse(); }
  void Adopt(Window&) override { Refuse(); }
  void Drop(Window&) override { Refuse(); }
  void PopUp(MenuItem&) override { Refuse(); }
  int ScreenWidthTwips() override { Refuse(); }
  int ScreenHeightTwips() override { Refuse(); }
  Desktop& Surroundings() override { return desktop_; }
  bool ShowOpen(FileDialogRecord&) override { Refuse(); }
  bool ShowSave(FileDialogRecord&) override { Refuse(); }
  std::optional<Path> BrowseForFolder(const FolderDialogRecord&) override { Refuse(); }
  bool Notify(TrayCommand, const TrayRecord&) override { return false; }
  std::unique_ptr<Socket> MakeSocket() override { Refuse(); }

 private:
  [[noreturn]] static void Refuse() { throw ProgramError(kInvalidCall); }

  Desktop desktop_;
};

/// A host's files, processes and clock, and no desktop; boxes can be answered.
class HeadlessMachine {
 public:
  explicit HeadlessMachine(const SystemParts& system) : HeadlessMachine(system, nullptr) {}
  HeadlessMachine(const SystemParts& system, MessageBoxes& boxes)
      : HeadlessMachine(system, &boxes) {}

  Machine& Parts() { return machine_; }

 private:
  HeadlessMachine(const SystemParts& system, MessageBoxes* boxes)
      : machine_{system,
                 {loop_, boxes != nullptr ? *boxes : desktop_, desktop_.Surroundings(), desktop_,
                  desktop_, desktop_, desktop_, ftp_}} {}

  IdleLoop loop_;
  NoDesktop desktop_;
  NoFtpTransport ftp_;
  Machine machine_;
};

}  // namespace tarnvale
