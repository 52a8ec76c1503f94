// File numbers of the archives.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "codec/bytes.h"
#include "platform/open_files.h"

namespace tarnvale {

/// The lowest number from 256 up that isn't open. Numbers that others hold fixed
/// lie below. Raises 67 when all are taken.
int FreeFileNumber(OpenFiles& open_files);

/// Opens a file as binary under a free number, which is returned.
int OpenUnderFreeNumber(OpenFiles& open_files, const Path& file);

/// Reads an open file whole into `bytes` and closes it. Raises 6 for one of 2 GiB
/// or more. One that gets shorter meanwhile is filled up with zeros.
void ReadWholeAndClose(OpenFiles& open_files, int number, ByteBuffer& bytes);

/// OpenFiles::Write for bytes.
void WriteBytes(OpenFiles& open_files, int number, std::span<const std::uint8_t> bytes);

}  // namespace tarnvale
