// The system's error codes as the classic run-time numbers.
#pragma once

#include <windows.h>

namespace tarnvale {

/// What a refusal means depends on what was tried.
enum class Attempt {
  kQuery,   ///< querying a property, reading a folder
  kChange,  ///< copying, creating, deleting
};

/// A drive or a network that is away for now: what was wanted may well be there.
bool MeansAway(DWORD error);

int ErrorNumberOf(DWORD error, Attempt attempt);

[[noreturn]] void RaiseNative(DWORD error, Attempt attempt);

/// Of the call before.
[[noreturn]] inline void RaiseLast(Attempt attempt) {
  RaiseNative(::GetLastError(), attempt);
}

}  // namespace tarnvale
