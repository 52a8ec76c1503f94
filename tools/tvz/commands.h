// What tvz does.
#pragma once

#include "tvz/arguments.h"

namespace tarnvale {

/// Runs one command. Raises CommandFailure and UsageError.
void RunCommand(const Request& request);

}  // namespace tarnvale
