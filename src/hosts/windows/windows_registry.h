// The system's registry.
#pragma once

#include <string>

#include "platform/registry.h"

namespace tarnvale {

/// Numbers as decimal text; texts that name variables as they are.
class WindowsRegistry : public Registry {
 public:
  std::string Read(const std::string& path) override;
};

}  // namespace tarnvale
