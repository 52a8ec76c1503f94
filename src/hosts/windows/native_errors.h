// The system's error codes as the classic run-time numbers.
#pragma once

#include <windows.h>

namespace tarnvale {

/// What was attempted: some codes mean another number when a file is only looked at.
enum class Attempt { kAsk, kChange };

/// A drive or a network that is away for now: what was wanted may well be there.
bool MeansAway(DWORD error);

int ErrorNumberOf(DWORD error, Attempt attempt);

[[noreturn]] void RaiseNative(DWORD error, Attempt attempt);

/// Of the call before.
[[noreturn]] inline void RaiseLast(Attempt attempt) {
  RaiseNative(::GetLastError(), attempt);
}

}  // namespace tarnvale
