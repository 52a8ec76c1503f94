// The real machine without its windows, for programs that measure and programs
// that are killed.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "platform/linux/linux_host.h"
#include "platform/machine.h"

namespace tarnvale {

/// A loop with as many timers as the program has, that costs what the program's
/// does while nobody touches its windows.
class IdleLoop : public EventLoop {
 public:
  explicit IdleLoop(int timers = 21)
      : timers_([] { return Now(); }, [this](const auto& handler) { Deliver(handler); }) {
    for (int i = 0; i < timers; ++i) {
      ticking_.push_back(std::make_unique<Timer>(timers_, 100 + 50 * i, true));
    }
  }

  void Yield() override {
    constexpr std::chrono::milliseconds kPassInterval{2};
    const std::chrono::nanoseconds now = Now();
    if (now - last_pass_ < kPassInterval) return;
    last_pass_ = now;
    for (std::deque<std::function<void()>> jobs = std::exchange(jobs_, {}); auto& job : jobs) {
      Deliver(job);
    }
    timers_.RunDue();
  }
  void WaitPass() override { Yield(); }
  int Run() override { return 0; }
  void Quit(int) override {}
  void Post(std::function<void()> job) override { jobs_.push_back(std::move(job)); }
  TimerQueue& Timers() override { return timers_; }

 private:
  static std::chrono::nanoseconds Now() {
    return std::chrono::steady_clock::now().time_since_epoch();
  }

  TimerQueue timers_;
  std::vector<std::unique_ptr<Timer>> ticking_;
  std::deque<std::function<void()>> jobs_;
  std::chrono::nanoseconds last_pass_{};
};

/// Nobody is there to answer.
class NoBoxes : public MessageBoxes {
 public:
  BoxAnswer Show(const BoxRequest&) override { throw ProgramError(kInvalidCall); }
};

class HostMachine {
 public:
  explicit HostMachine(const LinuxSurroundings& surroundings) : host_(surroundings) {}

  Machine& Parts() { return machine_; }

 private:
  LinuxHost host_;
  IdleLoop loop_;
  NoBoxes boxes_;
  Desktop desktop_;
  Machine machine_{host_.files,  host_.open_files, host_.profiles, host_.processes, host_.clock,
                   host_.random, host_.formats,    loop_,          boxes_,          desktop_};
};

}  // namespace tarnvale
