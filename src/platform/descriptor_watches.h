// What a host with an event loop offers to one with native descriptors.
#pragma once

#include <functional>
#include <memory>

namespace tarnvale {

enum class Readiness {
  kRead,  ///< bytes, the end or an error wait
  kWrite,
};

/// One descriptor under watch. Letting go of it ends the watch, in its own
/// handler too.
class DescriptorWatch {
 public:
  virtual ~DescriptorWatch() = default;
};

class DescriptorWatches {
 public:
  virtual ~DescriptorWatches() = default;

  /// Calls `ready` from the event loop, in every pass, for as long as the
  /// descriptor is ready; in nested passes too. The descriptor must stay open
  /// while it is watched.
  virtual std::unique_ptr<DescriptorWatch> Watch(int descriptor, Readiness readiness,
                                                 std::function<void()> ready) = 0;
};

}  // namespace tarnvale
