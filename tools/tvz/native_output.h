// Bytes to an open file of the system, and texts for people.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tarnvale {

/// Writes all of it. Raises CommandFailure, with `subject` for the file.
void WriteBytes(int file, std::span<const std::uint8_t> bytes, const std::string& subject);
void WriteText(int file, std::string_view text, const std::string& subject);

/// What the system says about an error number.
std::string ReasonOf(int error);

/// A text that stays on its line and does nothing to a terminal: control
/// characters become question marks.
std::string Shown(std::string_view text);

}  // namespace tarnvale
