// Making the input of a stream again.
#pragma once

#include <cstdint>
#include <span>

#include "codec/byte_buffer.h"
#include "codec/percent_report.h"

namespace tarnvale {

/// Writes what `stream` decodes to into `result`, whose memory is used again
/// where it is large enough. A compressed stream of length 0 gives itself.
/// Raises 9 (cut off or impossible) and kProgramDefinedError (mark or checksum);
/// `result` is then undefined. Memory: never more than the payload's bits can
/// hold symbols, whatever the length field says.
void DecodeStream(std::span<const std::uint8_t> stream, ByteBuffer& result, PercentReport& report);

}  // namespace tarnvale
