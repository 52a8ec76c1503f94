// The program that runs.
#pragma once

#include <string>

namespace tarnvale {

/// Native path of this program's file; empty when the system doesn't say.
std::string OwnProgramFile();

/// Native path of the folder that the program and what it keeps beside itself lie in,
/// without a slash at its end; empty likewise. Chosen: where a file "installed" lies
/// beside the program, it serves all users, and the folder is the user's own
/// `tarnvale` in $XDG_DATA_HOME, or in ~/.local/share.
std::string OwnProgramFolder();

}  // namespace tarnvale
