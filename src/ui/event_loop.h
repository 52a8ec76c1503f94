// The event loop: the one thread's turn-taking.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "base/failure.h"
#include "base/signal.h"
#include "ui/timer.h"

namespace tarnvale {

class EventLoop {
 public:
  virtual ~EventLoop() = default;

  /// One pass: events that are pending and timers that are due. Never blocks.
  /// Anything may have happened when it returns. A host may let passes that
  /// follow one another within 2 ms, with no timer due between them, count as
  /// one.
  virtual void Yield() = 0;

  /// A yield for waits that poll a flag: when nothing is pending it may sleep
  /// until something happens, 10 ms at most.
  virtual void WaitPass() = 0;

  /// Serves events until Quit. Returns the code that Quit was given. The end of the
  /// user's session is no event. A host that learns of it in time closes the first window as
  /// its close box does and flushes the profiles; elsewhere the system just ends the process.
  virtual int Run() = 0;
  virtual void Quit(int code) = 0;
  /// Whether Quit was called. A wait for what may never come ends then.
  virtual bool IsEnding() const = 0;

  /// Calls `job` from the loop, after the present event. May be called from any
  /// thread.
  virtual void Post(std::function<void()> job) = 0;

  /// The timers of the program. The host calls its RunDue in every pass.
  virtual TimerQueue& Timers() = 0;

  /// Runs the handler of one event. A ProgramError that nobody caught ends the
  /// handler here, so that it can't unwind the one that it interrupted, and is
  /// reported by `Fault`.
  void Deliver(const std::function<void()>& handler);

  /// Emitted for each error that left a handler. The program shows it.
  Signal<const ProgramError&> Fault;

  /// The number of the handler that runs, counted from 1; 0 outside of all.
  std::uint64_t RunningHandler() const { return running_.empty() ? 0 : running_.back(); }

  /// How many passes and loops are within each other; 1 in one that no handler
  /// waits for.
  virtual int Nesting() const = 0;

  /// Calls `job` from the loop as soon as nothing can know any more what was made
  /// in handler `first` and is referred to by nothing else from now on: none of the handlers
  /// from `first` up to this call runs any more, and all that the host did around
  /// them has returned too.
  void AfterHandlersSince(std::uint64_t first, std::function<void()> job);

 private:
  struct Later {
    std::uint64_t first;
    std::uint64_t last;
    int nesting;
    std::function<void()> job;
  };

  void LookForLater(std::uint64_t ended);
  bool MayRun(const Later& later) const;
  void RunLater();

  std::uint64_t begun_ = 0;
  std::vector<std::uint64_t> running_;
  std::vector<Later> later_;
  bool is_look_posted_ = false;
  std::uint64_t look_ = 0;  ///< the handler that looked last
};

}  // namespace tarnvale
