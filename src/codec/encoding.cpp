#include "codec/encoding.h"

#include <algorithm>
#include <cassert>
#include <memory>
#include <vector>

#include "codec/bytes.h"
#include "codec/code_tree.h"
#include "codec/huffman_stream.h"
#include "codec/segments.h"

namespace tarnvale {

PackedCodes PackCodes(const CodeTable& codes) {
  PackedCodes packed;
  packed.all_bytes = true;
  for (std::size_t value = 0; value < kSymbols; ++value) {
    const SymbolCode& code = codes[value];
    assert(code.Count <= kMostWordBits);
    CodeWord word = CodeWord{code.Count} << kLengthShift;
    for (std::size_t bit = 0; bit < code.Count; ++bit) word |= CodeWord{code.Data[bit]} << bit;
    packed.words[value] = word;
    packed.longest = std::max<unsigned>(packed.longest, code.Count);
    if (code.Count != 8) packed.all_bytes = false;
  }
  return packed;
}

PairTable::PairTable(const PackedCodes& codes)
    : words_(std::make_unique_for_overwrite<CodeWord[]>(kSymbols * kSymbols)) {
  CodeWord* at = words_.get();
  for (const CodeWord second : codes.words) {
    for (const CodeWord first : codes.words) {
      const unsigned length = LengthOf(first) + LengthOf(second);
      *at++ = length <= kMostWordBits ? (CodeWord{length} << kLengthShift) | BitsOf(first) |
                                            (BitsOf(second) << LengthOf(first))
                                      : CodeWord{kMostWordBits + 1} << kLengthShift;
    }
  }
}

namespace {

// Below this the table of pairs costs more than it saves.
constexpr std::size_t kWorthPairs = std::size_t{192} * 1024;
// The sum of six lengths must stay below 256.
constexpr unsigned kLongestInGroups = 42;

}  // namespace

PayloadPacker::PayloadPacker(const PackedCodes& codes, const Size& size, std::uint8_t* to)
    : codes_(codes), cursor_{.to = to} {
  if (size.input_bytes >= kWorthPairs && !codes.all_bytes)
    pairs_ = std::make_shared<PairTable>(codes);
  // Eight symbols of 5 bits on the average seldom have more than 56.
  four_pairs_fit_ = size.payload_bits <= 5 * size.input_bytes;
}

// At most 57 bits.
inline void PayloadPacker::Cursor::Append(std::uint64_t bits, unsigned length) {
  waiting |= bits << count;
  count += length;
  StoreLittle64(to, waiting);
  to += count >> 3U;
  waiting >>= count & ~7U;
  count &= 7U;
}

void PayloadPacker::Add(std::span<const std::uint8_t> bytes) {
  if (codes_.all_bytes) {
    AddBytes(bytes);
  } else if (codes_.longest > kLongestInGroups) {
    AddSingly(cursor_, bytes.data(), bytes.data() + bytes.size());
  } else if (pairs_) {
    four_pairs_fit_ ? AddPairs<4>(bytes) : AddPairs<3>(bytes);
  } else {
    AddSixes(bytes);
  }
}

std::uint8_t* PayloadPacker::Finish() {
  if (cursor_.count > 0) {
    *cursor_.to++ = static_cast<std::uint8_t>(cursor_.waiting);
    cursor_.waiting = cursor_.count = 0;
  }
  return cursor_.to;
}

// Its first and last symbols go by way of a buffer, as packing stores whole words: 64 of
// them have 8 bytes at least.
PayloadPacker::Edges PayloadPacker::PackSegment(std::span<const std::uint8_t> bytes,
                                                std::uint8_t* to, std::size_t first_bit) const {
  assert(bytes.size() >= kLeastSegment);
  constexpr std::size_t kEdge = 64;
  std::array<std::uint8_t, kEdge * kMostWordBits / 8 + 16> buffer{};
  const unsigned shared = first_bit % 8;
  to += first_bit / 8;
  PayloadPacker packer = *this;
  if (codes_.all_bytes) {
    packer.cursor_ = {.to = to};
    packer.Add(bytes);
    return {};
  }
  packer.cursor_ = {.count = shared, .to = buffer.data()};
  packer.Add(bytes.first(kEdge));
  Edges edges{.first = buffer[0]};
  std::copy(buffer.data() + (shared > 0 ? 1 : 0), packer.cursor_.to, to + (shared > 0 ? 1 : 0));
  to += packer.cursor_.to - buffer.data();
  packer.cursor_.to = to;
  packer.Add(bytes.subspan(kEdge, bytes.size() - 2 * kEdge));
  to = packer.cursor_.to;
  packer.cursor_.to = buffer.data();
  packer.Add(bytes.last(kEdge));
  std::copy(buffer.data(), packer.cursor_.to, to);
  edges.last = static_cast<std::uint8_t>(packer.cursor_.waiting);
  return edges;
}

// With codes of 8 bits each, one byte stands for one byte.
void PayloadPacker::AddBytes(std::span<const std::uint8_t> bytes) {
  std::array<std::uint8_t, kSymbols> substitute{};
  for (std::size_t value = 0; value < kSymbols; ++value) {
    substitute[value] = static_cast<std::uint8_t>(codes_.words[value] & 0xFFU);
  }
  SubstituteBytes(substitute, bytes, cursor_.to);
  cursor_.to += bytes.size();
}

void PayloadPacker::AddSingly(Cursor& cursor, const std::uint8_t* from,
                              const std::uint8_t* end) const {
  for (; from < end; ++from) {
    const CodeWord word = codes_.words[*from];
    cursor.Append(BitsOf(word), LengthOf(word));
  }
}

// Three or four pairs at a time.
template <unsigned kPairs>
void PayloadPacker::AddPairs(std::span<const std::uint8_t> bytes) {
  const std::uint8_t* at = bytes.data();
  const std::uint8_t* const end = at + bytes.size();
  const CodeWord* const pairs = pairs_->Words();
  Cursor cursor = cursor_;
  while (end - at >= 8) {
    const std::uint64_t symbols = LoadLittle64(at);
    const CodeWord a = pairs[symbols & 0xFFFFU];
    const CodeWord b = pairs[(symbols >> 16U) & 0xFFFFU];
    const CodeWord c = pairs[(symbols >> 32U) & 0xFFFFU];
    const CodeWord d = kPairs == 4 ? pairs[symbols >> 48U] : 0;
    const unsigned length = LengthOf(a + b + c + d);
    if (length <= kMostWordBits) [[likely]] {
      // Merged as a tree, so that the halves don't wait for one another.
      const std::uint64_t low = BitsOf(a) | (BitsOf(b) << LengthOf(a));
      const std::uint64_t high = BitsOf(c) | (BitsOf(d) << LengthOf(c));
      cursor.Append(low | (high << LengthOf(a + b)), length);
    } else {
      AddSingly(cursor, at, at + 2 * kPairs);
    }
    at += 2 * kPairs;
  }
  AddSingly(cursor, at, end);
  cursor_ = cursor;
}

void PayloadPacker::AddSixes(std::span<const std::uint8_t> bytes) {
  const std::uint8_t* at = bytes.data();
  const std::uint8_t* const end = at + bytes.size();
  const auto& words = codes_.words;
  Cursor cursor = cursor_;
  while (end - at >= 6) {
    const CodeWord w0 = words[at[0]];
    const CodeWord w1 = words[at[1]];
    const CodeWord w2 = words[at[2]];
    const CodeWord w3 = words[at[3]];
    const CodeWord w4 = words[at[4]];
    const CodeWord w5 = words[at[5]];
    const CodeWord first = w0 + w1;
    const CodeWord second = w2 + w3;
    const unsigned length = LengthOf(first + second + w4 + w5);
    if (length <= kMostWordBits) [[likely]] {
      const std::uint64_t low = BitsOf(w0) | (BitsOf(w1) << LengthOf(w0));
      const std::uint64_t middle = BitsOf(w2) | (BitsOf(w3) << LengthOf(w2));
      const std::uint64_t high = BitsOf(w4) | (BitsOf(w5) << LengthOf(w4));
      const std::uint64_t upper = middle | (high << LengthOf(second));
      cursor.Append(low | (upper << LengthOf(first)), length);
    } else {
      AddSingly(cursor, at, at + 6);
    }
    at += 6;
  }
  AddSingly(cursor, at, end);
  cursor_ = cursor;
}

namespace {

// The packer stores whole words.
constexpr std::size_t kSlackBytes = 8;

// The counts of an input, and of each of its segments where it has some.
struct InputCounts {
  SymbolCounts all{};
  std::vector<SymbolCounts> segments;
};

InputCounts CountSegments(std::span<const std::uint8_t> input, PhaseReports& reports,
                          Workers& workers) {
  InputCounts counts;
  counts.segments.resize(SegmentsOf(input.size()));
  RunSegments(
      workers, input.size(),
      [&](std::size_t begin, std::size_t end) { reports.ReportAll(begin, end); },
      [&](std::size_t segment, std::size_t begin, std::size_t end) {
        SymbolCounter counter;
        counter.Add(input.subspan(begin, end - begin));
        counts.segments[segment] = counter.Sum();
      });
  for (const SymbolCounts& segment : counts.segments) {
    for (std::size_t value = 0; value < kSymbols; ++value) counts.all[value] += segment[value];
  }
  return counts;
}

InputCounts CountSymbols(std::span<const std::uint8_t> input, PercentReport& report,
                         Workers& workers) {
  PhaseReports reports(report,
                       {.total = static_cast<double>(input.size()), .step = 1000, .scale = 7});
  if (IsWorthHelpers(input.size())) return CountSegments(input, reports, workers);
  SymbolCounter counter;
  RunWithReports(reports, input.size(), [&](std::size_t begin, std::size_t end) {
    counter.Add(input.subspan(begin, end - begin));
  });
  return {counter.Sum(), {}};
}

// The tree itself is needed no longer than this.
void AssignCodes(const SymbolCounts& counts, CodeTable& codes) {
  NodeTable nodes{};
  const int made = BuildTree(counts, nodes);
  CreateBitSequences(nodes, made - 1, {}, codes);
}

void Store(std::span<const std::uint8_t> input, ByteBuffer& stream) {
  const std::size_t size = kMarkBytes + input.size();
  stream.Renew(size, size);
  std::copy(kStoredMark.begin(), kStoredMark.end(), stream.Data());
  std::copy(input.begin(), input.end(), stream.Data() + kMarkBytes);
}

struct TableSize {
  std::size_t symbols = 0;
  std::size_t code_bits = 0;

  explicit TableSize(const CodeTable& codes) {
    for (const SymbolCode& code : codes) {
      symbols += code.Count > 0 ? 1 : 0;
      code_bits += code.Count;
    }
  }
  std::size_t HeadBytes() const {
    return kTableOffset + symbols * kTableEntryBytes + (code_bits + 7) / 8;
  }
};

// Everything in front of the payload; returns its end.
std::uint8_t* WriteHead(std::size_t input_bytes, std::uint8_t checksum, const CodeTable& codes,
                        std::uint8_t* stream) {
  std::copy(kCompressedMark.begin(), kCompressedMark.end(), stream);
  stream[kChecksumOffset] = checksum;
  StoreLittle32(stream + kLengthOffset, static_cast<std::uint32_t>(input_bytes));
  const TableSize size(codes);
  StoreLittle16(stream + kSymbolCountOffset, static_cast<std::uint16_t>(size.symbols));
  std::uint8_t* at = stream + kTableOffset;
  for (std::size_t value = 0; value < kSymbols; ++value) {
    if (codes[value].Count == 0) continue;
    *at++ = static_cast<std::uint8_t>(value);
    *at++ = codes[value].Count;
  }
  std::size_t position = 0;
  for (const SymbolCode& code : codes) {
    for (std::size_t bit = 0; bit < code.Count; ++bit, ++position) {
      if (position % 8 == 0) at[position / 8] = 0;
      at[position / 8] |= static_cast<std::uint8_t>(code.Data[bit] << (position % 8));
    }
  }
  return at + (position + 7) / 8;
}

std::size_t BitsOf(const SymbolCounts& counts, const PackedCodes& codes) {
  std::size_t bits = 0;
  for (std::size_t value = 0; value < kSymbols; ++value) {
    bits += static_cast<std::size_t>(counts[value]) * LengthOf(codes.words[value]);
  }
  return bits;
}

void PackSegments(std::span<const std::uint8_t> input, const PackedCodes& codes,
                  const PayloadPacker& packer, const std::vector<SymbolCounts>& segments,
                  std::uint8_t* to, PhaseReports& reports, Workers& workers) {
  std::vector<std::size_t> begins{0};
  for (const SymbolCounts& counts : segments)
    begins.push_back(begins.back() + BitsOf(counts, codes));
  std::vector<PayloadPacker::Edges> edges(segments.size());
  RunSegments(
      workers, input.size(),
      [&](std::size_t begin, std::size_t end) { reports.ReportAll(begin, end); },
      [&](std::size_t segment, std::size_t begin, std::size_t end) {
        edges[segment] = packer.PackSegment(input.subspan(begin, end - begin), to, begins[segment]);
      });
  for (std::size_t i = 1; i < begins.size(); ++i) {
    if (begins[i] % 8 == 0) continue;
    const std::uint8_t next = i < edges.size() ? edges[i].first : std::uint8_t{0};
    to[begins[i] / 8] = static_cast<std::uint8_t>(edges[i - 1].last | next);
  }
}

void WritePayload(std::span<const std::uint8_t> input, const CodeTable& codes,
                  std::size_t payload_bits, const std::vector<SymbolCounts>& segments,
                  std::uint8_t* to, PercentReport& report, Workers& workers) {
  PhaseReports reports(report, {.total = static_cast<double>(input.size()),
                                .step = 10000,
                                .scale = 88,
                                .offset = 5,
                                .second_offset = 7});
  const PackedCodes packed = PackCodes(codes);
  PayloadPacker packer(packed, {input.size(), payload_bits}, to);
  if (!segments.empty()) {
    PackSegments(input, packed, packer, segments, to, reports, workers);
    return;
  }
  RunWithReports(reports, input.size(), [&](std::size_t begin, std::size_t end) {
    packer.Add(input.subspan(begin, end - begin));
  });
  packer.Finish();
}

}  // namespace

void EncodeStream(std::span<const std::uint8_t> input, ByteBuffer& stream, PercentReport& report,
                  Workers& workers) {
  if (input.empty()) {
    Store(input, stream);
    return;
  }
  const InputCounts input_counts = CountSymbols(input, report, workers);
  const SymbolCounts& counts = input_counts.all;
  const auto codes = std::make_unique<CodeTable>();
  AssignCodes(counts, *codes);
  const auto payload_bits = static_cast<std::size_t>(PayloadBits(counts, *codes));
  const std::size_t payload_bytes = (payload_bits + 7) / 8;
  // Required: the payload alone decides, without head and table, and an equal
  // size doesn't store. One value throughout has no payload at all.
  if (payload_bytes > input.size() || payload_bytes == 0) {
    Store(input, stream);
    return;
  }
  PhaseReports(report,
               {.total = static_cast<double>(input.size()), .step = 10000, .scale = 5, .offset = 7})
      .ReportAll(0, input.size());
  const std::size_t size = TableSize(*codes).HeadBytes() + payload_bytes;
  stream.Renew(size, size + kSlackBytes);
  workers.WillFill(stream.Bytes());
  std::uint8_t* const payload = WriteHead(input.size(), ChecksumOf(counts), *codes, stream.Data());
  WritePayload(input, *codes, payload_bits, input_counts.segments, payload, report, workers);
  report.Report(100);
}

}  // namespace tarnvale
