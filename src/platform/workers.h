// The processors that have nothing else to do.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "platform/files.h"

namespace tarnvale {

/// Lends other processors to work that needs nothing but memory, and to reading files. The
/// program itself goes on having one thread.
class Workers {
 public:
  virtual ~Workers() = default;

  /// How many other processors there are; none at all is usual.
  virtual std::size_t Helpers() = 0;

  /// Returns when all that it began has ended. Calls `work` here and, at the same time, on up to
  /// `most_helpers` other threads, never more than Helpers(). It may be fewer, so each call takes
  /// pieces of the whole until none is left. `work` raises nothing and uses no host, only memory
  /// that it shares by atomics. Calls may be nested.
  virtual void Run(std::size_t most_helpers, const std::function<void()>& work) = 0;

  /// For a call that waits for a piece of another one.
  virtual void LetOthersRun() = 0;

  /// Says that all of this memory is about to be filled, best before anybody has used it. A host
  /// may have something cheaper than small pages for it. Changes no byte and raises nothing.
  virtual void WillFill(std::span<std::uint8_t>) {}

  /// Begins to read these files for TakeRead, which finds those of the call before from now
  /// on and no others; so two calls are always under way, and an empty one ends each of
  /// them. May read none, as where they are large. Raises nothing.
  virtual void ReadAhead(std::vector<Path> files) = 0;

  /// The content of such a file, until the next ReadAhead; none when it wasn't read or has
  /// changed since. Files are asked for in the order in which they were given.
  virtual std::optional<std::span<const std::uint8_t>> TakeRead(const Path& file) = 0;
};

/// Lends none.
class NoWorkers final : public Workers {
 public:
  std::size_t Helpers() override { return 0; }
  void Run(std::size_t, const std::function<void()>& work) override { work(); }
  void LetOthersRun() override {}
  void ReadAhead(std::vector<Path>) override {}
  std::optional<std::span<const std::uint8_t>> TakeRead(const Path&) override { return {}; }
};

}  // namespace tarnvale
