#include "ui/event_loop.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <optional>
#include <utility>

#include "base/out_of_memory.h"

namespace tarnvale {
namespace {

// What a statement raises, memory that a library couldn't get included.
std::optional<ProgramError> ErrorOf(const std::function<void()>& statement) {
  try {
    statement();
    return std::nullopt;
  } catch (const ProgramError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return OutOfMemory();
  }
}

/// Keeps the number of a handler among those that run.
class Running {
 public:
  Running(std::vector<std::uint64_t>& numbers, std::uint64_t number) : numbers_(numbers) {
    numbers_.push_back(number);
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running() { numbers_.pop_back(); }

 private:
  std::vector<std::uint64_t>& numbers_;
};

}  // namespace

void EventLoop::Deliver(const std::function<void()>& handler) {
  const std::uint64_t number = ++begun_;
  const auto error = ErrorOf([&] {
    const Running running(running_, number);
    handler();
  });
  // Showing it can fail as well where memory is short; the program lives on.
  if (error) ErrorOf([&] { Fault.Emit(*error); });
  ErrorOf([&] { LookForLater(number); });
}

// While something waits for handlers to end, each handler's end has the loop look
// whether it still has to. The look is itself a handler, and posts no other one.
void EventLoop::LookForLater(std::uint64_t ended) {
  if (later_.empty() || is_look_posted_ || ended == look_) return;
  Post([this] { RunLater(); });
  is_look_posted_ = true;
}

void EventLoop::AfterHandlersSince(std::uint64_t first, std::function<void()> job) {
  later_.push_back({first, begun_, std::max(Nesting(), 1), std::move(job)});
}

bool EventLoop::MayRun(const Later& later) const {
  // A loop within the one that was running may lie inside of what has to end.
  if (Nesting() > later.nesting) return false;
  return std::none_of(running_.begin(), running_.end(), [&](std::uint64_t number) {
    return later.first <= number && number <= later.last;
  });
}

void EventLoop::RunLater() {
  is_look_posted_ = false;
  look_ = RunningHandler();
  std::vector<Later> ready;
  const auto waiting = std::stable_partition(later_.begin(), later_.end(),
                                             [this](const Later& later) { return MayRun(later); });
  std::move(later_.begin(), waiting, std::back_inserter(ready));
  later_.erase(later_.begin(), waiting);
  for (const Later& later : ready) later.job();
}

}  // namespace tarnvale
