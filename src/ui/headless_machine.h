// A machine without a desktop, for commands and for programs that measure.
#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

#include "base/failure.h"
#include "platform/no_ftp_transport.h"
#include "ui/machine.h"
#include "ui/paced_loop.h"

namespace tarnvale {

/// A loop whose yields cost what the program's do while nobody touches its
/// windows.
class IdleLoop : public PacedLoop {
 public:
  IdleLoop() : PacedLoop([] { return std::chrono::steady_clock::now().time_since_epoch(); }) {}
  void Quit(int) override {}
  void Post(std::function<void()> job) override {
    const Lock lock(jobs_lock_);
    jobs_.push_back(std::move(job));
  }

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

  void Pump(Milliseconds wait) override {
    if (wait > Milliseconds::zero()) std::this_thread::sleep_for(Milliseconds(1));
    for (auto jobs = TakeJobs(); auto& job : jobs) Deliver(job);
  }
  void Serve() override {}
  void StartAlarm(std::optional<Milliseconds>) override {}

  std::deque<std::function<void()>> TakeJobs() {
    const Lock lock(jobs_lock_);
    return std::exchange(jobs_, {});
  }

  std::atomic_flag jobs_lock_;
  std::deque<std::function<void()>> jobs_;
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
