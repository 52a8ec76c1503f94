// The registry of a Linux machine: there is none.
#pragma once

#include <string>

#include "base/failure.h"
#include "platform/registry.h"

namespace tarnvale {

class LinuxRegistry : public Registry {
 public:
  std::string Read(const std::string&) override { throw ProgramError(kFileNotFound); }
};

}  // namespace tarnvale
