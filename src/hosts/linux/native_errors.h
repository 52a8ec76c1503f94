// From the system's error codes to run-time error numbers.
#pragma once

namespace tarnvale {

/// What a refusal means depends on what was tried.
enum class Attempt {
  kQuery,   ///< querying a property, reading a folder: a refusal is 75
  kChange,  ///< copying, creating, deleting: a refusal is 70
};

/// The run-time error number for an `errno` value. ENOENT gives 53.
int ErrorNumberOf(int error, Attempt attempt);

/// Raises ErrorNumberOf.
[[noreturn]] void RaiseNative(int error, Attempt attempt);

}  // namespace tarnvale
