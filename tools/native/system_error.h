// What the system refused, in words.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include "base/failure.h"
#include "native/command_failure.h"

namespace tarnvale {

class SystemError : public std::runtime_error {
 public:
  /// Of the last call.
  SystemError();
  /// `code`: the system's.
  explicit SystemError(int code);
  explicit SystemError(const std::string& reason) : std::runtime_error(reason) {}
};

/// Calls, and raises CommandFailure about `subject` for what the system refuses.
template <class Call>
auto About(const std::string& subject, Call&& call) {
  try {
    return std::forward<Call>(call)();
  } catch (const SystemError& error) {
    throw CommandFailure(subject, error.what());
  }
}

}  // namespace tarnvale
