// Making a stream of an input.
#pragma once

#include <cstdint>
#include <span>

#include "codec/byte_buffer.h"
#include "codec/percent_report.h"

namespace tarnvale {

/// Writes the stream of `input` into `stream`, whose memory is used again where
/// it is large enough. Input: below 2^31 bytes. Raises 6 when the payload has
/// 2^31 bits or more; `stream` is then undefined.
void EncodeStream(std::span<const std::uint8_t> input, ByteBuffer& stream, PercentReport& report);

}  // namespace tarnvale
