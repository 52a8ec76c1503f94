// The processors that have nothing else to do.
#pragma once

#include <cstddef>
#include <functional>

namespace tarnvale {

/// Lends other processors to work that needs nothing but memory. The program itself
/// goes on having one thread: a call returns when all that it began has ended.
class Workers {
 public:
  virtual ~Workers() = default;

  /// How many other processors there are; none at all is usual.
  virtual std::size_t Helpers() = 0;

  /// Calls `work` here and, at the same time, on up to `most_helpers` other threads, never
  /// more than Helpers(). It may be fewer, so each call takes pieces of the whole until
  /// none is left. `work` raises nothing and uses no host, only
  /// memory that it shares by atomics. Calls may be nested.
  virtual void Run(std::size_t most_helpers, const std::function<void()>& work) = 0;

  /// For a call that waits for a piece of another one.
  virtual void LetOthersRun() = 0;
};

/// Lends none.
class NoWorkers final : public Workers {
 public:
  std::size_t Helpers() override { return 0; }
  void Run(std::size_t, const std::function<void()>& work) override { work(); }
  void LetOthersRun() override {}
};

}  // namespace tarnvale
