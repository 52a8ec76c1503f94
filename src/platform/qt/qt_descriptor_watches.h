// Descriptors in Qt's event loop.
#pragma once

#include "platform/descriptor_watches.h"

namespace tarnvale {

class QtDescriptorWatches final : public DescriptorWatches {
 public:
  std::unique_ptr<DescriptorWatch> Watch(int descriptor, Readiness readiness,
                                         std::function<void()> ready) override;
};

}  // namespace tarnvale
