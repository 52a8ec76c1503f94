// Bytes to an open file of the system, and what it says of errors.
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

}  // namespace tarnvale
