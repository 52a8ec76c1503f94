// What ends a command.
#pragma once

#include <stdexcept>
#include <string>

namespace tarnvale {

/// The archive is bad, or reading and writing failed: exit code 1. One line,
/// without the "tvz: " in front.
class CommandFailure : public std::runtime_error {
 public:
  CommandFailure(const std::string& subject, const std::string& reason)
      : std::runtime_error(subject + ": " + reason) {}
};

/// The command line can't be meant so: exit code 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace tarnvale
