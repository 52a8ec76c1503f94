// Decoding bit by bit: the meaning of every stream, sound or not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "codec/byte_buffer.h"
#include "codec/code_reader.h"
#include "codec/percent_report.h"

namespace tarnvale {

/// Reports of a decoder that has come to some bit of the stream. A byte is
/// reported once all of it was decoded and the result isn't whole yet.
class DecodingReports {
 public:
  DecodingReports(PercentReport& report, std::size_t stream_bytes, std::size_t payload_offset)
      : reports_(report, {.total = static_cast<double>(stream_bytes), .step = kStep, .scale = 89}),
        next_((payload_offset / kStep + 1) * kStep) {}

  /// The first `bytes` bytes of the stream were decoded.
  void ReportBytes(std::size_t bytes) {
    if (bytes < next_) return;
    reports_.ReportAll(next_, bytes + 1);
    next_ = (bytes / kStep + 1) * kStep;
  }

 private:
  static constexpr std::size_t kStep = 10000;

  PhaseReports reports_;
  std::size_t next_;  // multiple of the step that was not looked at yet
};

/// Decodes until `head.result_bytes` or the end of the stream. Raises 9 when a
/// bit leads to a missing child.
void WalkPlainly(std::span<const std::uint8_t> stream, const StreamHead& head,
                 const DecodingTree& tree, ByteBuffer& result, DecodingReports& reports);

}  // namespace tarnvale
