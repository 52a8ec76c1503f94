// Whether a run may start.
#pragma once

#include <string>

namespace tarnvale {

/// The field EngineFree after one tick of the gate's timer: "1" when a run may start, or
/// else "0".
/// Required: "1" whenever the compression bar is at 0 or 100, whatever the transfer's
/// status text says. Between them a text that isn't in the table doesn't free.
std::string EngineFreeAfterTick(int compression_progress, const std::string& connection_status);

}  // namespace tarnvale
