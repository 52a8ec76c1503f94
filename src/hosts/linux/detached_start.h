// Starting programs that nobody waits for.
#pragma once

#include <string>
#include <vector>

namespace tarnvale {

/// Starts a program file as a process of its own: child of nobody here, in a
/// session of its own, no file of ours open, input and output nowhere. Waits
/// only until the program is loaded. Returns 0, or the `errno` of what failed.
int StartDetached(const std::string& program, const std::vector<std::string>& words);

/// In a copy of this process, before it becomes another program: a session of its own,
/// the system's signals, `nowhere` as input and output, and nothing else open behind its
/// start. Allocates no memory. False, with `errno` set, when that fails.
bool LeaveTheProgram(int nowhere);

/// The native path of a program that the search path leads to; empty when there
/// is none.
std::string ProgramOnSearchPath(const std::string& name);

/// True for a plain file that this user may run.
bool IsProgram(const std::string& native);

}  // namespace tarnvale
