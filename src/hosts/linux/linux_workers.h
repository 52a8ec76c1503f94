// The other processors of a Linux system.
#pragma once

#include <cstddef>
#include <functional>

#include "platform/workers.h"

namespace tarnvale {

/// Begins threads for each Run: that takes some ten microseconds, and none of them is
/// there while nobody needs it.
class LinuxWorkers final : public Workers {
 public:
  std::size_t Helpers() override;
  void Run(std::size_t most_helpers, const std::function<void()>& work) override;
  void LetOthersRun() override;
};

}  // namespace tarnvale
