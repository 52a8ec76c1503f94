// Whether a run may start.
#pragma once

#include <string>

namespace tarnvale {

/// The field EngineFree after one tick of the gate's timer. `present` is what
/// it holds now.
///
/// Required, order included: each rule overwrites the last, so that the result
/// is "1" whenever the compression bar is at 0 or 100, whatever the
/// transfer's status text says. A text that is in no row decides nothing.
std::string EngineFreeAfterTick(std::string present, int compression_progress,
                                const std::string& connection_status);

}  // namespace tarnvale
