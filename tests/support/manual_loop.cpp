#include "tests/support/manual_loop.h"

#include <gtest/gtest.h>

#include <utility>

namespace tarnvale::testing {
namespace {

// A job that posts itself for ever would hang a test; this many passes at one
// moment are taken for that.
constexpr int kMostPasses = 10000;

struct Deeper {
  explicit Deeper(int& passes) : passes_(passes) { ++passes_; }
  Deeper(const Deeper&) = delete;
  Deeper& operator=(const Deeper&) = delete;
  ~Deeper() { --passes_; }
  int& passes_;
};

}  // namespace

ManualLoop::ManualLoop(FakeClock& clock)
    : clock_(clock),
      timers_([this] { return clock_.Uptime(); },
              [this](const std::function<void()>& handler) { Deliver(handler); }) {}

void ManualLoop::OnYield(int n, std::function<void()> action) {
  yield_actions_.emplace(yield_count_ + n, std::move(action));
}

void ManualLoop::Post(std::function<void()> job) {
  const std::lock_guard lock(jobs_mutex_);
  jobs_.push_back(std::move(job));
}

std::size_t ManualLoop::JobCount() {
  const std::lock_guard lock(jobs_mutex_);
  return jobs_.size();
}

// Only the jobs that are there at the start: what they post comes later.
bool ManualLoop::RunJobs() {
  const std::size_t count = JobCount();
  for (std::size_t i = 0; i < count; ++i) {
    std::function<void()> job;
    {
      const std::lock_guard lock(jobs_mutex_);
      // A job may have yielded and so run those behind it.
      if (jobs_.empty()) break;
      job = std::move(jobs_.front());
      jobs_.pop_front();
    }
    Deliver(job);
  }
  return count > 0;
}

void ManualLoop::Yield() {
  const Deeper pass(passes_);
  const int present = ++yield_count_;
  RunJobs();
  timers_.RunDue();
  for (auto next = yield_actions_.find(present); next != yield_actions_.end();
       next = yield_actions_.find(present)) {
    const std::function<void()> action = std::move(next->second);
    yield_actions_.erase(next);
    Deliver(action);
  }
}

void ManualLoop::WaitPass() {
  const bool pending = JobCount() > 0;
  Yield();
  if (!pending) Advance(std::chrono::milliseconds(10));
}

// Everything that can happen without time moving on.
void ManualLoop::Pass() {
  const Deeper pass(passes_);
  int passes = 0;
  while (RunJobs()) {
    if (++passes < kMostPasses) continue;
    ADD_FAILURE() << "a posted job posts itself for ever";
    const std::lock_guard lock(jobs_mutex_);
    jobs_.clear();
    break;
  }
  timers_.RunDue();
}

// A handler that advanced the time itself may have passed `uptime` already.
void ManualLoop::MoveTo(std::chrono::nanoseconds uptime) {
  if (uptime > clock_.Uptime()) clock_.Move(uptime - clock_.Uptime());
}

void ManualLoop::Advance(std::chrono::nanoseconds span) {
  const auto target = clock_.Uptime() + span;
  while (!quit_code_) {
    Pass();
    const auto due = timers_.NextDue();
    if (!due || *due > target) break;
    MoveTo(*due);
  }
  MoveTo(target);
}

int ManualLoop::Run() {
  quit_code_.reset();
  while (!quit_code_) {
    Pass();
    if (quit_code_) break;
    const auto due = timers_.NextDue();
    if (!due && JobCount() == 0) {
      ADD_FAILURE() << "the loop waits for ever: no job, no timer, no Quit";
      return -1;
    }
    if (due) MoveTo(*due);
  }
  return *quit_code_;
}

}  // namespace tarnvale::testing
