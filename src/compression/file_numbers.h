// File numbers of the archives.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/open_files.h"

namespace tarnvale {

/// The lowest number from 256 up that isn't open. Numbers that others hold fixed
/// lie below. Raises 67 when all are taken.
int FreeFileNumber(OpenFiles& open_files);

/// OpenFiles::Write for bytes.
void WriteBytes(OpenFiles& open_files, int number, std::span<const std::uint8_t> bytes);

}  // namespace tarnvale
