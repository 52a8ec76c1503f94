// Decoding a payload by tables, from several places at once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "codec/byte_buffer.h"
#include "codec/code_reader.h"
#include "codec/decoding_tables.h"
#include "codec/plain_walk.h"

namespace tarnvale {

/// Whether the fast decoder gives what the plain walk gives: the tree is
/// complete and no code longer than its tables serve.
bool CanDecodeByTables(const StreamHead& head, const DecodingTree& tree);

/// As WalkPlainly, for streams that CanDecodeByTables. `checksum` becomes the
/// exclusive or of the result.
void DecodeByTables(std::span<const std::uint8_t> stream, const StreamHead& head,
                    ByteBuffer& result, DecodingReports& reports, std::uint8_t& checksum);

/// Several cursors in one stream. Further cursors begin at guessed bits of the
/// payload, into memory of their own. A Huffman stream falls into step by
/// itself: after some symbols a wrong cursor stands on the same bits as the
/// right one. What it made before that is dropped, the rest is kept.
class LaneDecoder {
 public:
  LaneDecoder(std::span<const std::uint8_t> stream, const StreamHead& head, ByteBuffer& result);

  /// Decodes all. Returns the number of symbols.
  std::size_t Run(DecodingReports& reports);
  std::uint8_t Checksum() const { return checksum_; }

 private:
  static constexpr std::size_t kLanes = 4;

  struct Lane {
    std::uint64_t position = 0;  // bit of the stream
    std::uint8_t* out = nullptr;
  };

  std::uint64_t Window(std::uint64_t position) const;
  bool HasRoomFor(std::uint64_t bits) const;
  bool RunGroup(std::uint64_t span_bits);
  void RunLanes(std::array<Lane, kLanes>& lanes, const std::array<std::uint64_t, kLanes>& stops);
  void RunLane(Lane& lane, std::uint64_t stop) const;
  bool Join(Lane& lane, const Lane& next, std::uint64_t next_start, const std::uint8_t* made);
  void RunAlone(std::uint64_t bits);
  void RunExactly();
  void Advance(const Lane& lane);
  void DecodeOne(Lane& lane) const;

  const std::span<const std::uint8_t> stream_;
  const DecodingTables tables_;
  const std::uint64_t end_bit_;
  std::uint8_t* const result_begin_;
  std::uint8_t* const result_end_;
  const std::ptrdiff_t announced_;
  Lane lane_;  // the right one
  std::array<std::unique_ptr<std::uint8_t[]>, kLanes - 1> guesses_;
  std::uint8_t checksum_ = 0;
};

}  // namespace tarnvale
