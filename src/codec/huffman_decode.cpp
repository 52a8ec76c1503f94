#include "codec/huffman_decode.h"

#include <algorithm>
#include <memory>

#include "base/failure.h"
#include "codec/code_reader.h"
#include "codec/huffman_stream.h"
#include "codec/payload_decoding.h"
#include "codec/plain_walk.h"
#include "codec/symbol_counts.h"

namespace tarnvale {
namespace {

// Below this, walking takes less time than making tables.
constexpr std::size_t kWorthTables = 512;

void Give(std::span<const std::uint8_t> bytes, ByteBuffer& result) {
  result.Renew(bytes.size(), bytes.size());
  std::copy(bytes.begin(), bytes.end(), result.Data());
}

// Required: only a stream that is right but for its third byte is refused by
// name. Any other foreign one goes on as if it were compressed.
bool IsStored(std::span<const std::uint8_t> stream) {
  if (stream.size() < kMarkBytes) throw ProgramError(kSubscriptOutOfRange);
  const bool marked = stream[0] == kCompressedMark[0] && stream[1] == kCompressedMark[1] &&
                      stream[3] == kCompressedMark[3];
  if (!marked || stream[2] == kCompressedMark[2]) return false;
  if (stream[2] == kStoredMark[2]) return true;
  throw ProgramError(kProgramDefinedError, "HuffmanDecode()",
                     "The data either was not compressed with HE3 or is corrupt "
                     "(identification string not found)");
}

// Returns the checksum of the result.
std::uint8_t DecodePayload(std::span<const std::uint8_t> stream, const StreamHead& head,
                           ByteBuffer& result, PercentReport& report) {
  const DecodingTree tree(head.codes);
  DecodingReports reports(report, stream.size(), head.payload_offset);
  std::uint8_t checksum = 0;
  if (stream.size() - head.payload_offset >= kWorthTables && CanDecodeByTables(head, tree)) {
    DecodeByTables(stream, head, result, reports, checksum);
  } else {
    WalkPlainly(stream, head, tree, result, reports);
    checksum = ChecksumOf(result.View());
  }
  return checksum;
}

}  // namespace

void DecodeStream(std::span<const std::uint8_t> stream, ByteBuffer& result, PercentReport& report) {
  if (IsStored(stream)) {
    // Required: the stored form of an empty input doesn't decode.
    if (stream.size() == kMarkBytes) throw ProgramError(kSubscriptOutOfRange);
    Give(stream.subspan(kMarkBytes), result);
    return;
  }
  if (AnnouncedLength(stream) == 0) {
    Give(stream, result);
    return;
  }
  const auto head = std::make_unique<StreamHead>();
  ReadHead(stream, *head);
  const std::uint8_t checksum = DecodePayload(stream, *head, result, report);
  PhaseReports(
      report,
      {.total = static_cast<double>(result.Size()), .step = 10000, .scale = 11, .offset = 89})
      .ReportAll(0, result.Size());
  if (checksum != head->checksum) {
    throw ProgramError(kProgramDefinedError, "clsHuffman.Decode()",
                       "The data might be corrupted (checksum did not match expected value)");
  }
  if (result.Size() == 0) throw ProgramError(kSubscriptOutOfRange);
  if (report.Last() != 100) report.Report(100);
}

}  // namespace tarnvale
