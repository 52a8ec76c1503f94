#include "codec/payload_decoding.h"

#include <algorithm>

#include "codec/byte_order.h"
#include "codec/substitution.h"

namespace tarnvale {
namespace {

constexpr unsigned kLookUps = 4;  // from one window of 57 bits
constexpr std::uint64_t kIndexMask = DecodingTables::kEntries - 1;

// Bytes that a step may write behind what it decodes, and bytes of the stream
// that it may look at behind its position.
constexpr std::size_t kWriteSlack = 64;
constexpr std::size_t kReadSlack = 32;
// Bits that one step may use at most.
constexpr std::uint64_t kStepBits = 128;

// Distance of two cursors in bits: a multiple of all lengths from 1 to 12, for a
// cursor that is off by less than the lengths' greatest common divisor never
// falls into step.
constexpr std::uint64_t kUnit = 27720;
constexpr std::array<std::uint64_t, 2> kSpans{8 * kUnit, kUnit};
// Steps after which two cursors that haven't met are given up.
constexpr int kMostJoinSteps = 4096;
// How far the right cursor then goes on alone.
constexpr std::uint64_t kAlone = 4 * kUnit;

}  // namespace

bool CanDecodeByTables(const StreamHead& head, const DecodingTree& tree) {
  return DecodingTables::CanServe(head.codes) && tree.IsComplete();
}

LaneDecoder::LaneDecoder(std::span<const std::uint8_t> stream, const StreamHead& head,
                         ByteBuffer& result)
    : stream_(stream),
      tables_(head.codes),
      end_bit_(stream.size() * 8),
      result_begin_(result.Data()),
      result_end_(result.Data() + result.Size()),
      announced_(head.result_bytes),
      lane_{head.payload_offset * 8, result.Data()} {}

// At least 57 bits from a position on; zeros behind the end.
std::uint64_t LaneDecoder::Window(std::uint64_t position) const {
  const std::size_t at = position / 8;
  std::uint64_t window = 0;
  if (at + 8 <= stream_.size()) {
    window = LoadLittle64(&stream_[at]);
  } else {
    for (std::size_t i = at; i < stream_.size(); ++i) {
      window |= std::uint64_t{stream_[i]} << (8 * (i - at));
    }
  }
  return window >> (position % 8);
}

inline void LaneDecoder::DecodeOne(Lane& lane) const {
  const auto symbol = tables_.First(Window(lane.position));
  *lane.out++ = symbol.value;
  lane.position += symbol.length;
}

// Whether the next `bits` bits lie in the stream, and all that they can hold
// fits into what is left of the result without making it whole.
bool LaneDecoder::HasRoomFor(std::uint64_t bits) const {
  const auto left = static_cast<std::uint64_t>(result_end_ - lane_.out);
  return lane_.position + bits + 8 * kReadSlack <= end_bit_ &&
         left > bits / tables_.ShortestCode() + kWriteSlack;
}

namespace {

// As many look-ups as one window allows. The symbols of each are written as one
// word, whose rest the next one overwrites. A long code stops it: its entry is 0
// and moves nothing.
template <class Lane>
inline void StepLane(const std::uint8_t* stream, const std::uint64_t* entries,
                     const DecodingTables& tables, Lane& lane) {
  std::uint64_t window = LoadLittle64(stream + (lane.position >> 3U)) >> (lane.position & 7U);
  std::uint64_t used = 0;
  std::uint64_t entry = 0;
  for (unsigned i = 0; i < kLookUps; ++i) {
    entry = entries[window & kIndexMask];
    StoreLittle64(lane.out, entry >> 16U);
    lane.out += (entry >> 8U) & 0xFFU;
    window >>= entry & 63U;
    used += entry;
  }
  lane.position += used & 0xFFU;
  if (entry == 0) [[unlikely]] {
    window = LoadLittle64(stream + (lane.position >> 3U)) >> (lane.position & 7U);
    const auto symbol = tables.Long(window);
    *lane.out++ = symbol.value;
    lane.position += symbol.length;
  }
}

}  // namespace

void LaneDecoder::RunLane(Lane& lane, std::uint64_t stop) const {
  Lane at = lane;
  while (at.position < stop) StepLane(stream_.data(), tables_.Entries(), tables_, at);
  lane = at;
}

// All lanes in turn, so that none waits for its own last look-up, until the
// first of them comes to its stop; then each to its own.
void LaneDecoder::RunLanes(std::array<Lane, kLanes>& lanes,
                           const std::array<std::uint64_t, kLanes>& stops) {
  const std::uint8_t* const stream = stream_.data();
  const std::uint64_t* const entries = tables_.Entries();
  Lane a = lanes[0];
  Lane b = lanes[1];
  Lane c = lanes[2];
  Lane d = lanes[3];
  while (a.position < stops[0] && b.position < stops[1] && c.position < stops[2] &&
         d.position < stops[3]) {
    StepLane(stream, entries, tables_, a);
    StepLane(stream, entries, tables_, b);
    StepLane(stream, entries, tables_, c);
    StepLane(stream, entries, tables_, d);
  }
  lanes = {a, b, c, d};
  // The last one has nobody to meet and stays where it is.
  for (std::size_t i = 0; i + 1 < kLanes; ++i) RunLane(lanes[i], stops[i]);
}

// Brings `lane`, which has come to the start of `next` or beyond, together with
// what `next` made. False when they don't meet.
bool LaneDecoder::Join(Lane& lane, const Lane& next, std::uint64_t next_start,
                       const std::uint8_t* made) {
  std::uint64_t other = next_start;
  const std::uint8_t* kept = made;
  for (int step = 0; other != lane.position; ++step) {
    if (step == kMostJoinSteps || other >= next.position) return false;
    if (lane.position < other) {
      DecodeOne(lane);
    } else {
      other += tables_.First(Window(other)).length;
      ++kept;
    }
  }
  if (other > next.position) return false;
  lane.out = std::copy(kept, static_cast<const std::uint8_t*>(next.out), lane.out);
  lane.position = next.position;
  return true;
}

void LaneDecoder::Advance(const Lane& lane) {
  checksum_ ^= ChecksumOf({lane_.out, lane.out});
  lane_ = lane;
}

// Decodes about `span_bits` in each lane. False when lanes didn't meet.
bool LaneDecoder::RunGroup(std::uint64_t span_bits) {
  std::array<Lane, kLanes> lanes;
  std::array<std::uint64_t, kLanes> stops{};
  for (std::size_t i = 0; i < kLanes; ++i) {
    lanes[i].position = lane_.position + i * span_bits;
    lanes[i].out = i == 0 ? lane_.out : guesses_[i - 1].get();
    stops[i] = lanes[i].position + span_bits;
  }
  RunLanes(lanes, stops);
  Lane right = lanes[0];
  bool met = true;
  for (std::size_t i = 1; met && i < kLanes; ++i) {
    met = Join(right, lanes[i], stops[i - 1], guesses_[i - 1].get());
  }
  Advance(right);
  return met;
}

void LaneDecoder::RunAlone(std::uint64_t bits) {
  Lane lane = lane_;
  RunLane(lane, lane.position + bits);
  Advance(lane);
}

// The last symbols: never behind the end of the stream or of the result.
void LaneDecoder::RunExactly() {
  Lane lane = lane_;
  while (lane.out < result_end_) {
    const auto symbol = tables_.First(Window(lane.position));
    if (lane.position + symbol.length > end_bit_) break;
    *lane.out++ = symbol.value;
    lane.position += symbol.length;
  }
  Advance(lane);
}

std::size_t LaneDecoder::Run(DecodingReports& reports) {
  for (const std::uint64_t span : kSpans) {
    // A step, and then joining, may take a lane some bits further than its stop.
    const std::uint64_t group = kLanes * span + 2 * kStepBits;
    while (HasRoomFor(group)) {
      if (guesses_[0] == nullptr) {
        for (auto& guess : guesses_) {
          guess = std::make_unique_for_overwrite<std::uint8_t[]>(
              (span + kStepBits) / tables_.ShortestCode() + kWriteSlack);
        }
      }
      if (!RunGroup(span) && HasRoomFor(kAlone + kStepBits)) RunAlone(kAlone);
      reports.ReportBytes(lane_.position / 8);
    }
  }
  while (HasRoomFor(kUnit)) {
    RunAlone(kUnit - kStepBits);
    reports.ReportBytes(lane_.position / 8);
  }
  while (HasRoomFor(8 * kStepBits)) RunAlone(7 * kStepBits);
  RunExactly();
  const bool whole = lane_.out - result_begin_ == announced_;
  reports.ReportBytes(whole ? (lane_.position - 1) / 8 : stream_.size());
  return static_cast<std::size_t>(lane_.out - result_begin_);
}

namespace {

// Every code has 8 bits: each byte of the payload is one symbol.
std::size_t DecodeBytes(std::span<const std::uint8_t> stream, const StreamHead& head,
                        ByteBuffer& result, DecodingReports& reports, std::uint8_t& checksum) {
  std::array<std::uint8_t, kSymbols> substitute{};
  for (std::size_t value = 0; value < kSymbols; ++value) {
    std::size_t code = 0;
    for (std::size_t bit = 0; bit < 8; ++bit) {
      code |= static_cast<std::size_t>(head.codes[value].Data[bit]) << bit;
    }
    substitute[code] = static_cast<std::uint8_t>(value);
  }
  constexpr std::size_t kPiece = 16384;
  std::size_t done = 0;
  while (done < result.Size()) {
    const std::size_t piece = std::min(kPiece, result.Size() - done);
    SubstituteBytes(substitute, stream.subspan(head.payload_offset + done, piece),
                    result.Data() + done);
    checksum ^= ChecksumOf({result.Data() + done, piece});
    done += piece;
    const bool whole = done == static_cast<std::size_t>(head.result_bytes);
    reports.ReportBytes(head.payload_offset + done - (whole ? 1 : 0));
  }
  return done;
}

bool IsAllBytes(const CodeTable& codes) {
  return std::all_of(codes.begin(), codes.end(),
                     [](const SymbolCode& code) { return code.Count == 8; });
}

}  // namespace

void DecodeByTables(std::span<const std::uint8_t> stream, const StreamHead& head,
                    ByteBuffer& result, DecodingReports& reports, std::uint8_t& checksum) {
  std::size_t shortest = DecodingTables::kLongestCode;
  for (const SymbolCode& code : head.codes) {
    if (code.Count > 0) shortest = std::min<std::size_t>(shortest, code.Count);
  }
  const std::size_t bits = (stream.size() - head.payload_offset) * 8;
  const std::size_t most = std::min(static_cast<std::size_t>(head.result_bytes), bits / shortest);
  result.Renew(most, most + kWriteSlack);
  checksum = 0;
  if (IsAllBytes(head.codes)) {
    result.Shrink(DecodeBytes(stream, head, result, reports, checksum));
    return;
  }
  LaneDecoder decoder(stream, head, result);
  result.Shrink(decoder.Run(reports));
  checksum = decoder.Checksum();
}

}  // namespace tarnvale
