// The hidden state of the engine.
#pragma once

#include <cstdint>
#include <string>

#include "base/property.h"
#include "core/run_files.h"

namespace tarnvale {

/// What the run page shows before the first run.
inline constexpr const char* kNoRunYet = "No Backup Process Has Been Currently Performed";

/// Texts hold decimal numbers unless said otherwise. A run in progress has no
/// state of its own: it exists as a call on the stack.
struct RunState {
  /// "1": a run may start; "0": something is at work. Written by the engine's
  /// gate only, and read as a number.
  Property<std::string> EngineFree{"0"};

  /// The storage location that a run uses: a copy of the setting, taken at the
  /// load and when the user selects a location. A run appends a backslash.
  Property<std::string> RunDestination;

  RunFiles Files;

  /// The loop counter of the run's loops.
  std::int16_t RunIndex = 0;

  Property<std::string> ItemText{"0"};
  Property<std::string> MarkerChar{"+"};
  Property<std::string> MarkerCount{"0"};
  Property<std::string> PathSepChar{"\\"};
  Property<std::string> PathSepCount{"0"};
  Property<std::string> DriveText{"0"};

  /// The three lines of the run page.
  Property<std::string> SourceCaption{kNoRunYet};
  Property<std::string> TargetCaption{kNoRunYet};
  Property<std::string> StatusCaption{kNoRunYet};

  /// The two bars of the run page, 0 to 100. The second may pass its maximum.
  Property<int> CopyBar{0};
  Property<int> FileBar{0};

  /// "0" until the main window's first activation has placed the focus, then "1".
  Property<std::string> FocusDone{"0"};
};

}  // namespace tarnvale
