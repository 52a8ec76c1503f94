// Making the input of a stream again. The walk along the tree, bit by bit, is what
// every stream means, sound or not; lanes.h is the fast way through sound ones.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "codec/bytes.h"
#include "codec/code_tree.h"
#include "codec/percent_report.h"
#include "platform/workers.h"

namespace tarnvale {

/// Writes what `stream` decodes to into `result`, whose memory is used again
/// where it is large enough. A compressed stream of length 0 gives itself.
/// Raises 9 (cut off or impossible) and kProgramDefinedError (mark or checksum);
/// `result` is then undefined. Memory: never more than the payload's bits can
/// hold symbols, whatever the length field says.
void DecodeStream(std::span<const std::uint8_t> stream, ByteBuffer& result, PercentReport& report,
                  Workers& workers);

/// The head of a compressed stream with all codes.
struct StreamHead {
  std::uint8_t checksum = 0;
  std::int32_t result_bytes = 0;
  CodeTable codes{};
  std::size_t payload_offset = 0;
};

/// Length of the result that a stream announces. Raises 9 when the stream ends
/// before it.
std::int32_t AnnouncedLength(std::span<const std::uint8_t> stream);

/// Reads everything in front of the payload. Raises 9 when the stream ends
/// before that, or for a code or a result of no length.
void ReadHead(std::span<const std::uint8_t> stream, StreamHead& head);

/// A tree made of codes. Any codes go, prefix codes or not.
class DecodingTree {
 public:
  /// Raises 9 when the codes need more than 512 nodes.
  explicit DecodingTree(const CodeTable& codes);

  /// The child of a node, -1 when it is missing.
  int Child(int node, bool bit) const {
    const HuffmanNode& at = nodes_[static_cast<std::size_t>(node)];
    return bit ? at.RightNode : at.LeftNode;
  }
  /// The byte value at which decoding stops, -1 where it goes on.
  int Value(int node) const { return nodes_[static_cast<std::size_t>(node)].Value; }

  /// Whether any bits lead to a value: two children at each inner node, and no
  /// value above another.
  bool IsComplete() const;

 private:
  void CreateTree(int symbol, const SymbolCode& code);
  std::int16_t NewNode(std::int16_t parent);

  NodeTable nodes_{};
  int count_ = 0;
};

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
