// The test machine's loop, for tests that wait for the real machine.
#pragma once

#include <chrono>
#include <functional>
#include <thread>
#include <utility>

#include "ui/event_loop.h"

namespace tarnvale::testing {

/// A wait takes the real time and none of the test's.
class RealWaits : public EventLoop {
 public:
  explicit RealWaits(EventLoop& loop) : loop_(loop) {}
  void Yield() override { loop_.Yield(); }
  void WaitPass() override {
    loop_.Yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  int Run() override { return loop_.Run(); }
  void Quit(int code) override { loop_.Quit(code); }
  bool IsEnding() const override { return loop_.IsEnding(); }
  void Post(std::function<void()> job) override { loop_.Post(std::move(job)); }
  TimerQueue& Timers() override { return loop_.Timers(); }
  int Nesting() const override { return loop_.Nesting(); }

 protected:
  EventLoop& loop_;
};

}  // namespace tarnvale::testing
