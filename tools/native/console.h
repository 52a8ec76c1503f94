// A command and its caller: arguments, output, and being stopped.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// In UTF-8 where the system has texts of its own; without the program's name.
std::vector<std::string> Arguments(int argc, char** argv);

/// Writes to standard output. Raises CommandFailure. A text for a person is shown in
/// the system's own characters where a person sees it.
void Print(std::string_view text);
void PrintBytes(std::span<const std::uint8_t> bytes);

/// Writes to the standard error output, as far as that goes.
void PrintError(std::string_view text);
/// Whether somebody sees what goes there.
bool ErrorsAreSeen();

/// What is in work is deleted when the person, or the system, stops this command. Linux
/// does so within the signal and never gets behind it. On Windows, where open files can't
/// be deleted by others, the command itself ends: `Stopped` is raised by the next
/// `StopIfAsked`, and `main` returns `kStopped`.
void CatchEnding();

class Stopped {};
inline constexpr int kStopped = static_cast<int>(0xC000013A);
void StopIfAsked();

}  // namespace tarnvale
