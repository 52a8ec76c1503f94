#include "codec/lanes.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "codec/bytes.h"
#include "codec/decoding.h"
#include "codec/segments.h"

namespace tarnvale {
namespace {

// What the next bits of a stream decode to. Serves complete trees with codes
// of up to kLongestCode bits.
class DecodingTables {
 public:
  // Bits that one look-up sees.
  static constexpr unsigned kIndexBits = 12;
  static constexpr std::size_t kEntries = std::size_t{1} << kIndexBits;
  // Symbols that one entry can hold.
  static constexpr unsigned kMostSymbols = 6;
  // A window of 57 bits always holds one.
  static constexpr unsigned kLongestCode = 56;

  struct Symbol {
    std::uint8_t value = 0;
    std::uint8_t length = 0;  ///< bits
  };

  explicit DecodingTables(const CodeTable& codes);

  // Whether these tables can serve such codes at all.
  static bool CanServe(const CodeTable& codes);

  // By the next 12 bits: bits used (bits 0 to 7), number of symbols (8 to 15),
  // and the symbols from bit 16 up. 0 where the first code is longer.
  const std::uint64_t* Entries() const { return entries_.data(); }

  // The one symbol that a window of at least 56 bits begins with.
  Symbol First(std::uint64_t window) const {
    const Symbol symbol = first_[window & (kEntries - 1)];
    return symbol.length != 0 ? symbol : Long(window);
  }

  // As First, for a window that begins with a code of more than 12 bits.
  Symbol Long(std::uint64_t window) const;

  unsigned ShortestCode() const { return shortest_; }

 private:
  // The codes that begin with one index: what the bits behind it decode to.
  struct LongCodes {
    unsigned bits = 0;  // that the sub-table sees
    std::vector<Symbol> symbols;
  };

  void FillFirst(const CodeTable& codes);
  void FillEntries();
  void FillLong(const CodeTable& codes);

  std::array<std::uint64_t, kEntries> entries_{};
  std::array<Symbol, kEntries> first_{};
  std::array<std::uint16_t, kEntries> long_index_{};
  std::vector<LongCodes> long_codes_;
  // For codes beyond a sub-table.
  DecodingTree tree_;
  unsigned shortest_ = kLongestCode;
};

// Longer codes are walked: so rare are they.
constexpr unsigned kMostSubBits = 9;

std::uint64_t BitsOf(const SymbolCode& code) {
  std::uint64_t bits = 0;
  for (std::size_t bit = 0; bit < code.Count; ++bit) bits |= std::uint64_t{code.Data[bit]} << bit;
  return bits;
}

bool DecodingTables::CanServe(const CodeTable& codes) {
  return std::all_of(codes.begin(), codes.end(),
                     [](const SymbolCode& code) { return code.Count <= kLongestCode; });
}

DecodingTables::DecodingTables(const CodeTable& codes) : tree_(codes) {
  for (const SymbolCode& code : codes) {
    if (code.Count > 0) shortest_ = std::min<unsigned>(shortest_, code.Count);
  }
  FillFirst(codes);
  FillEntries();
  FillLong(codes);
}

void DecodingTables::FillFirst(const CodeTable& codes) {
  for (std::size_t value = 0; value < kSymbols; ++value) {
    const SymbolCode& code = codes[value];
    if (code.Count == 0 || code.Count > kIndexBits) continue;
    const std::size_t step = std::size_t{1} << code.Count;
    for (std::size_t index = BitsOf(code); index < kEntries; index += step) {
      first_[index] = {static_cast<std::uint8_t>(value), code.Count};
    }
  }
}

void DecodingTables::FillEntries() {
  for (std::size_t index = 0; index < kEntries; ++index) {
    std::uint64_t symbols = 0;
    unsigned count = 0;
    unsigned used = 0;
    while (count < kMostSymbols) {
      const Symbol next = first_[index >> used];
      if (next.length == 0 || used + next.length > kIndexBits) break;
      symbols |= std::uint64_t{next.value} << (16 + 8 * count++);
      used += next.length;
    }
    entries_[index] = symbols | (count << 8U) | used;
  }
}

void DecodingTables::FillLong(const CodeTable& codes) {
  // The longest code of each beginning decides how much its sub-table sees.
  for (const SymbolCode& code : codes) {
    if (code.Count <= kIndexBits) continue;
    std::uint16_t& which = long_index_[BitsOf(code) & (kEntries - 1)];
    if (which == 0) {
      long_codes_.emplace_back();
      which = static_cast<std::uint16_t>(long_codes_.size());
    }
    unsigned& bits = long_codes_[which - 1U].bits;
    bits = std::clamp<unsigned>(code.Count - kIndexBits, bits, kMostSubBits);
  }
  for (LongCodes& sub : long_codes_) sub.symbols.resize(std::size_t{1} << sub.bits);
  for (std::size_t value = 0; value < kSymbols; ++value) {
    const SymbolCode& code = codes[value];
    if (code.Count <= kIndexBits) continue;
    LongCodes& sub = long_codes_[long_index_[BitsOf(code) & (kEntries - 1)] - 1U];
    if (code.Count > kIndexBits + sub.bits) continue;
    const std::size_t step = std::size_t{1} << (code.Count - kIndexBits);
    for (std::size_t at = BitsOf(code) >> kIndexBits; at < sub.symbols.size(); at += step) {
      sub.symbols[at] = {static_cast<std::uint8_t>(value), code.Count};
    }
  }
}

DecodingTables::Symbol DecodingTables::Long(std::uint64_t window) const {
  const LongCodes& sub = long_codes_[long_index_[window & (kEntries - 1)] - 1U];
  const std::size_t rest = (window >> kIndexBits) & (sub.symbols.size() - 1);
  if (sub.symbols[rest].length != 0) return sub.symbols[rest];
  int node = 0;
  std::uint8_t length = 0;
  do {
    node = tree_.Child(node, ((window >> length++) & 1U) != 0);
  } while (tree_.Value(node) < 0);
  return {static_cast<std::uint8_t>(tree_.Value(node)), length};
}

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

// Four cursors in one stream, the first of which is the right one.
class LaneDecoder {
 public:
  LaneDecoder(std::span<const std::uint8_t> stream, const StreamHead& head, ByteBuffer& result);

  // Decodes all. Returns the number of symbols.
  std::size_t Run(DecodingReports& reports, Workers& workers);
  std::uint8_t Checksum() const { return checksum_; }

 private:
  static constexpr std::size_t kLanes = 4;

  struct Lane {
    std::uint64_t position = 0;  // bit of the stream
    std::uint8_t* out = nullptr;
  };

  // Bytes that are still to be copied to where they belong.
  struct Piece {
    std::span<const std::uint8_t> bytes;
    std::uint8_t* place = nullptr;
  };

  using Memory = std::unique_ptr<std::uint8_t[]>;
  // What one processor decodes into.
  using Buffers = std::array<Memory, kLanes>;
  using Lanes = std::array<Lane, kLanes>;
  using Pieces = std::array<Piece, kLanes>;

  std::uint64_t Window(std::uint64_t position) const;
  bool HasRoomFor(std::uint64_t bits) const { return HasRoomFor(lane_, bits); }
  bool HasRoomFor(const Lane& lane, std::uint64_t bits) const;
  std::size_t BlocksLeft() const;
  Memory MemoryFor(std::uint64_t span_bits) const;
  void RunTogether(DecodingReports& reports, Workers& workers);
  void RunBlocks(std::size_t count, std::vector<Buffers>& buffers, Workers& workers);
  Lanes DecodeBlock(std::uint64_t begin, const Buffers& buffers);
  Pieces JoinBlock(Lane& right, std::uint64_t begin, const Lanes& lanes, const Buffers& buffers);
  bool RunGroup(std::uint64_t span_bits);
  void RunLanes(std::array<Lane, kLanes>& lanes, const std::array<std::uint64_t, kLanes>& stops);
  void RunLane(Lane& lane, std::uint64_t stop) const;
  bool Join(Lane& lane, const Lane& next, std::uint64_t next_start, const std::uint8_t* made,
            Piece& piece) const;
  static void Copy(const Piece& piece);
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
  std::array<Memory, kLanes - 1> guesses_;
  std::uint8_t checksum_ = 0;
};

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
bool LaneDecoder::HasRoomFor(const Lane& lane, std::uint64_t bits) const {
  const auto left = static_cast<std::uint64_t>(result_end_ - lane.out);
  return lane.position + bits + 8 * kReadSlack <= end_bit_ &&
         left > bits / tables_.ShortestCode() + kWriteSlack;
}

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
// what `next` made, most of which is then `piece`. False when they don't meet.
bool LaneDecoder::Join(Lane& lane, const Lane& next, std::uint64_t next_start,
                       const std::uint8_t* made, Piece& piece) const {
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
  piece = {{kept, next.out}, lane.out};
  lane = {next.position, lane.out + piece.bytes.size()};
  return true;
}

void LaneDecoder::Copy(const Piece& piece) {
  std::copy(piece.bytes.begin(), piece.bytes.end(), piece.place);
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
    Piece piece;
    met = Join(right, lanes[i], stops[i - 1], guesses_[i - 1].get(), piece);
    Copy(piece);
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

LaneDecoder::Memory LaneDecoder::MemoryFor(std::uint64_t span_bits) const {
  return std::make_unique_for_overwrite<std::uint8_t[]>(
      (span_bits + kStepBits) / tables_.ShortestCode() + kWriteSlack);
}

// A block is four of the long spans.
constexpr std::uint64_t kBlockBits = 4 * kSpans[0];
// Some milliseconds for two processors.
constexpr std::size_t kBlocksInRound = 128;
// Fewer aren't worth a call.
constexpr std::size_t kLeastBlocks = 8;

// How many lie in the stream whole, whatever the result still has room for.
std::size_t LaneDecoder::BlocksLeft() const {
  const std::uint64_t needed = lane_.position + 2 * kStepBits + 8 * kReadSlack;
  return needed < end_bit_ ? (end_bit_ - needed) / kBlockBits : 0;
}

// Rounds of blocks, as long as what is left is long.
void LaneDecoder::RunTogether(DecodingReports& reports, Workers& workers) {
  const std::size_t helpers = std::min(kMostHelpers, workers.Helpers());
  std::vector<Buffers> buffers(helpers + 1);
  while (helpers > 0 && BlocksLeft() >= kLeastBlocks && HasRoomFor(kLeastBlocks * kBlockBits)) {
    for (Buffers& of_one : buffers) {
      for (Memory& memory : of_one) {
        if (memory == nullptr) memory = MemoryFor(kSpans[0]);
      }
    }
    RunBlocks(std::min(kBlocksInRound, BlocksLeft()), buffers, workers);
    reports.ReportBytes(lane_.position / 8);
  }
}

// Whoever has decoded a block waits until the one before it was joined, and joins it: then its
// place is known, and what is copied there keeps nobody waiting. Where the result may have no
// room for one, the right cursor stays, and there is none for those behind it either.
void LaneDecoder::RunBlocks(std::size_t count, std::vector<Buffers>& buffers, Workers& workers) {
  const std::uint64_t begin = lane_.position;
  std::atomic<std::size_t> next_buffers = 0;
  std::atomic<std::size_t> next = 0;
  std::atomic<std::size_t> joined = 0;
  std::atomic<unsigned> checksum = 0;
  Lane right = lane_;  // of whoever joins
  workers.Run(buffers.size() - 1, [&] {
    const Buffers& mine = buffers[next_buffers++];
    for (std::size_t i = next++; i < count; i = next++) {
      const std::uint64_t block_begin = begin + i * kBlockBits;
      const Lanes lanes = DecodeBlock(block_begin, mine);
      while (joined.load(std::memory_order_acquire) != i) workers.LetOthersRun();
      const std::uint8_t* const from = right.out;
      Pieces pieces;
      if (HasRoomFor(right, kBlockBits + 2 * kStepBits)) {
        pieces = JoinBlock(right, block_begin, lanes, mine);
      }
      const std::uint8_t* const to = right.out;
      joined.store(i + 1, std::memory_order_release);
      std::for_each(pieces.begin(), pieces.end(), &Copy);
      checksum ^= ChecksumOf({from, to});
    }
  });
  checksum_ ^= static_cast<std::uint8_t>(checksum.load());
  lane_ = right;
}

LaneDecoder::Lanes LaneDecoder::DecodeBlock(std::uint64_t begin, const Buffers& buffers) {
  Lanes lanes;
  std::array<std::uint64_t, kLanes> stops{};
  for (std::size_t i = 0; i < kLanes; ++i) {
    lanes[i] = {begin + i * kSpans[0], buffers[i].get()};
    stops[i] = lanes[i].position + kSpans[0];
  }
  RunLanes(lanes, stops);
  return lanes;
}

// Takes the right cursor to the block's end or a few bits behind it.
LaneDecoder::Pieces LaneDecoder::JoinBlock(Lane& right, std::uint64_t begin, const Lanes& lanes,
                                           const Buffers& buffers) {
  Pieces pieces;
  for (std::size_t i = 0; i < kLanes; ++i) {
    const std::uint64_t start = begin + i * kSpans[0];
    const bool met = Join(right, lanes[i], start, buffers[i].get(), pieces[i]);
    if (!met) RunLane(right, start + kSpans[0]);
  }
  return pieces;
}

std::size_t LaneDecoder::Run(DecodingReports& reports, Workers& workers) {
  RunTogether(reports, workers);
  for (const std::uint64_t span : kSpans) {
    // A step, and then joining, may take a lane some bits further than its stop.
    const std::uint64_t group = kLanes * span + 2 * kStepBits;
    while (HasRoomFor(group)) {
      if (guesses_[0] == nullptr) {
        for (auto& guess : guesses_) {
          guess = MemoryFor(span);
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

// Every code has 8 bits: each byte of the payload is one symbol.
std::size_t DecodeBytes(std::span<const std::uint8_t> stream, const StreamHead& head,
                        ByteBuffer& result, DecodingReports& reports, std::uint8_t& checksum,
                        Workers& workers) {
  std::array<std::uint8_t, kSymbols> substitute{};
  for (std::size_t value = 0; value < kSymbols; ++value) {
    std::size_t code = 0;
    for (std::size_t bit = 0; bit < 8; ++bit) {
      code |= static_cast<std::size_t>(head.codes[value].Data[bit]) << bit;
    }
    substitute[code] = static_cast<std::uint8_t>(value);
  }
  const auto decode = [&](std::size_t begin, std::size_t end) {
    constexpr std::size_t kPiece = 16384;
    std::uint8_t sum = 0;
    for (std::size_t at = begin; at < end; at += kPiece) {
      const std::size_t piece = std::min(kPiece, end - at);
      SubstituteBytes(substitute, stream.subspan(head.payload_offset + at, piece),
                      result.Data() + at);
      sum ^= ChecksumOf({result.Data() + at, piece});
    }
    return sum;
  };
  const auto report = [&](std::size_t, std::size_t end) {
    const bool whole = end == static_cast<std::size_t>(head.result_bytes);
    reports.ReportBytes(head.payload_offset + end - (whole ? 1 : 0));
  };
  if (!IsWorthHelpers(result.Size())) {
    checksum = decode(0, result.Size());
    report(0, result.Size());
    return result.Size();
  }
  std::atomic<unsigned> sum = 0;
  RunSegments(workers, result.Size(), report,
              [&](std::size_t, std::size_t begin, std::size_t end) { sum ^= decode(begin, end); });
  checksum = static_cast<std::uint8_t>(sum.load());
  return result.Size();
}

bool IsAllBytes(const CodeTable& codes) {
  return std::all_of(codes.begin(), codes.end(),
                     [](const SymbolCode& code) { return code.Count == 8; });
}

}  // namespace

bool CanDecodeByTables(const StreamHead& head, const DecodingTree& tree) {
  return DecodingTables::CanServe(head.codes) && tree.IsComplete();
}

void DecodeByTables(std::span<const std::uint8_t> stream, const StreamHead& head,
                    ByteBuffer& result, DecodingReports& reports, std::uint8_t& checksum,
                    Workers& workers) {
  std::size_t shortest = DecodingTables::kLongestCode;
  for (const SymbolCode& code : head.codes) {
    if (code.Count > 0) shortest = std::min<std::size_t>(shortest, code.Count);
  }
  const std::size_t bits = (stream.size() - head.payload_offset) * 8;
  const std::size_t most = std::min(static_cast<std::size_t>(head.result_bytes), bits / shortest);
  result.Renew(most, most + kWriteSlack);
  checksum = 0;
  if (IsAllBytes(head.codes)) {
    result.Shrink(DecodeBytes(stream, head, result, reports, checksum, workers));
    return;
  }
  LaneDecoder decoder(stream, head, result);
  result.Shrink(decoder.Run(reports, workers));
  checksum = decoder.Checksum();
}

}  // namespace tarnvale
