#include "codec/plain_walk.h"

#include <algorithm>

#include "base/failure.h"

namespace tarnvale {

void WalkPlainly(std::span<const std::uint8_t> stream, const StreamHead& head,
                 const DecodingTree& tree, ByteBuffer& result, DecodingReports& reports) {
  // Each symbol takes a bit at least: what the length field says on top of that
  // never comes.
  const auto announced = static_cast<std::size_t>(head.result_bytes);
  const std::size_t bits = (stream.size() - head.payload_offset) * 8;
  const std::size_t most = std::min(announced, bits);
  result.Renew(most, most);
  std::uint8_t* const to = result.Data();
  std::size_t count = 0;
  int node = 0;
  for (std::size_t at = head.payload_offset; at < stream.size(); ++at) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      node = tree.Child(node, ((stream[at] >> bit) & 1U) != 0);
      if (node < 0) throw ProgramError(kSubscriptOutOfRange);
      if (tree.Value(node) < 0) continue;
      to[count++] = static_cast<std::uint8_t>(tree.Value(node));
      if (count == announced) return;
      node = 0;
    }
    reports.ReportBytes(at + 1);
  }
  result.Shrink(count);
}

}  // namespace tarnvale
