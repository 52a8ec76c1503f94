// Memory that can't be had: an error like every other.
#pragma once

#include <new>

#include "base/failure.h"

namespace tarnvale {

inline constexpr int kOutOfMemory = 7;

/// Error 7. It is the std::bad_alloc that whoever allocates may expect, and a
/// ProgramError, so that it is passed over, shown and tested for like any other.
/// Takes no memory itself. (A handler of std::exception, which it is twice over,
/// doesn't catch it.)
class OutOfMemory : public std::bad_alloc, public ProgramError {
 public:
  // The base is no exception that is made and not thrown.
  OutOfMemory() : ProgramError(kOutOfMemory) {}  // NOLINT(bugprone-throw-keyword-missing)
  const char* what() const noexcept override { return ProgramError::what(); }
};

/// From now on every `new` of the process that fails raises OutOfMemory. For main().
void RaiseOutOfMemory();

}  // namespace tarnvale
