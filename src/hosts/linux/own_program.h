// The program that runs.
#pragma once

#include <string>

namespace tarnvale {

/// Native path of this program's file; empty when the system doesn't tell.
std::string OwnProgramFile();

}  // namespace tarnvale
