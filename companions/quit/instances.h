// The running instances of the program that lies beside this one.
#pragma once

#include <chrono>
#include <memory>
#include <vector>

namespace tarnvale {

/// A process that is held, not known by a number: that may belong to another process the
/// moment after it was read.
class Instance {
 public:
  virtual ~Instance() = default;

  /// To end by itself.
  virtual void RequestEnd() const = 0;
  /// Ends it.
  virtual void Kill() const = 0;
  /// Waits for its end, as long as this at most.
  virtual void AwaitEnd(std::chrono::milliseconds patience) const = 0;
};

using Instances = std::vector<std::unique_ptr<Instance>>;

/// Those of this user that run the very file "tarnvale" of this program's own folder.
/// Raises NobodyKnows.
Instances FindInstances();

/// Whether one is left.
class NobodyKnows {};

/// Since some moment, without jumps.
std::chrono::milliseconds Uptime();

}  // namespace tarnvale
