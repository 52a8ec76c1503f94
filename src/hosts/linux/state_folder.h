// The folder where the program keeps its own bookkeeping.
#pragma once

#include <string>

namespace tarnvale {

/// Native path of this user's home: $HOME, or what the user's entry says.
std::string HomeFolder();

/// Native path of the state folder of this user: "tarnvale" in
/// $XDG_STATE_HOME, or in ~/.local/state. It needn't exist yet.
std::string DefaultStateFolder();

/// Makes a native folder with all above it, for this user's eyes only. False
/// when that fails.
bool MakeStateFolder(const std::string& folder);

}  // namespace tarnvale
