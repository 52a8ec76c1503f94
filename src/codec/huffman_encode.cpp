#include "codec/huffman_encode.h"

#include <algorithm>
#include <memory>

#include "codec/byte_order.h"
#include "codec/code_tree.h"
#include "codec/huffman_stream.h"
#include "codec/packed_codes.h"
#include "codec/payload_packing.h"
#include "codec/symbol_counts.h"

namespace tarnvale {
namespace {

// The packer stores whole words.
constexpr std::size_t kSlackBytes = 8;

SymbolCounts CountSymbols(std::span<const std::uint8_t> input, PercentReport& report) {
  PhaseReports reports(report,
                       {.total = static_cast<double>(input.size()), .step = 1000, .scale = 7});
  SymbolCounter counter;
  RunWithReports(reports, input.size(), [&](std::size_t begin, std::size_t end) {
    counter.Add(input.subspan(begin, end - begin));
  });
  return counter.Sum();
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

void WritePayload(std::span<const std::uint8_t> input, const CodeTable& codes,
                  std::size_t payload_bits, std::uint8_t* to, PercentReport& report) {
  PhaseReports reports(report, {.total = static_cast<double>(input.size()),
                                .step = 10000,
                                .scale = 88,
                                .offset = 5,
                                .second_offset = 7});
  const PackedCodes packed = PackCodes(codes);
  PayloadPacker packer(packed, {input.size(), payload_bits}, to);
  RunWithReports(reports, input.size(), [&](std::size_t begin, std::size_t end) {
    packer.Add(input.subspan(begin, end - begin));
  });
  packer.Finish();
}

}  // namespace

void EncodeStream(std::span<const std::uint8_t> input, ByteBuffer& stream, PercentReport& report) {
  if (input.empty()) {
    Store(input, stream);
    return;
  }
  const SymbolCounts counts = CountSymbols(input, report);
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
  std::uint8_t* const payload = WriteHead(input.size(), ChecksumOf(counts), *codes, stream.Data());
  WritePayload(input, *codes, payload_bits, payload, report);
  if (report.Last() != 100) report.Report(100);
}

}  // namespace tarnvale
