// A long input in segments, which several processors work on.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>

#include "codec/percent_report.h"
#include "platform/workers.h"

namespace tarnvale {

/// Below this nobody is worth calling.
inline constexpr std::size_t kWorthHelpers = std::size_t{2} << 20U;
inline constexpr std::size_t kMostHelpers = 3;
inline constexpr std::size_t kSegmentBytes = std::size_t{256} << 10U;
/// What is worked on between two reports, so that windows go on: some milliseconds.
inline constexpr std::size_t kSegmentsInRound = 64;

inline bool IsWorthHelpers(std::size_t size_bytes) {
  return size_bytes >= kWorthHelpers;
}

/// The last one takes what is left over.
inline std::size_t SegmentsOf(std::size_t size_bytes) {
  return size_bytes / kSegmentBytes;
}

inline std::size_t EndOfSegment(std::size_t segment, std::size_t size_bytes) {
  return segment + 1 < SegmentsOf(size_bytes) ? (segment + 1) * kSegmentBytes : size_bytes;
}

/// Runs `work(segment, begin, end)` over all segments of [0, `size_bytes`), each once and
/// in any order, and makes the reports of each round at its end.
template <class Report, class Work>
void RunSegments(Workers& workers, std::size_t size_bytes, Report&& report, Work&& work) {
  const std::size_t count = SegmentsOf(size_bytes);
  for (std::size_t first = 0; first < count; first += kSegmentsInRound) {
    const std::size_t last = std::min(first + kSegmentsInRound, count);
    std::atomic<std::size_t> next = first;
    workers.Run(kMostHelpers, [&] {
      for (std::size_t i = next++; i < last; i = next++) {
        work(i, i * kSegmentBytes, EndOfSegment(i, size_bytes));
      }
    });
    report(first * kSegmentBytes, EndOfSegment(last - 1, size_bytes));
  }
}

}  // namespace tarnvale
