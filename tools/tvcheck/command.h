// What tvcheck does.
#pragma once

#include "tvcheck/arguments.h"

namespace tarnvale {

/// Checks and prints. True when all that the program copies is there and current.
/// Raises CommandFailure and UsageError.
bool RunCheck(const Request& request);

}  // namespace tarnvale
