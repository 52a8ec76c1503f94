// Reading the bytes of an open file into memory.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace tarnvale {

/// Reads from a position of a file into `bytes`; returns how many: fewer only at the
/// end of the file. Many are read by all processors at once. Raises 57.
std::size_t ReadData(int file, off_t position, std::span<std::uint8_t> bytes);

}  // namespace tarnvale
