#include "codec/decoding.h"

#include <algorithm>
#include <memory>

#include "base/failure.h"
#include "codec/bytes.h"
#include "codec/code_tree.h"
#include "codec/huffman_stream.h"
#include "codec/lanes.h"

namespace tarnvale {
namespace {

void Require(bool inside) {
  if (!inside) throw ProgramError(kSubscriptOutOfRange);
}

std::uint8_t ByteAt(std::span<const std::uint8_t> stream, std::size_t offset) {
  Require(offset < stream.size());
  return stream[offset];
}

// Reads the lengths; returns the offset behind the table.
std::size_t ReadTable(std::span<const std::uint8_t> stream, CodeTable& codes) {
  Require(stream.size() >= kTableOffset);
  const int entries = static_cast<std::int16_t>(LoadLittle16(&stream[kSymbolCountOffset]));
  std::size_t at = kTableOffset;
  for (int entry = 0; entry < entries; ++entry, at += kTableEntryBytes) {
    const std::uint8_t symbol = ByteAt(stream, at);
    const std::uint8_t length = ByteAt(stream, at + 1);
    // Chosen: there is no buffer of no entries, as with an empty file.
    Require(length > 0);
    codes[symbol].Count = length;
  }
  return at;
}

}  // namespace

std::int32_t AnnouncedLength(std::span<const std::uint8_t> stream) {
  Require(stream.size() >= kSymbolCountOffset);
  return static_cast<std::int32_t>(LoadLittle32(&stream[kLengthOffset]));
}

void ReadHead(std::span<const std::uint8_t> stream, StreamHead& head) {
  head.result_bytes = AnnouncedLength(stream);
  head.checksum = stream[kChecksumOffset];
  Require(head.result_bytes > 0);
  std::size_t at = ReadTable(stream, head.codes);
  // Required: the byte behind the codes is fetched as soon as the last of them
  // is full, so a stream must go on where they end on a whole byte.
  std::uint8_t current = ByteAt(stream, at);
  unsigned position = 0;
  for (SymbolCode& code : head.codes) {
    for (std::size_t bit = 0; bit < code.Count; ++bit) {
      code.Data[bit] = (current >> position) & 1U;
      if (++position == 8) {
        current = ByteAt(stream, ++at);
        position = 0;
      }
    }
  }
  head.payload_offset = position == 0 ? at : at + 1;
}

DecodingTree::DecodingTree(const CodeTable& codes) {
  NewNode(-1);
  for (std::size_t symbol = 0; symbol < kSymbols; ++symbol) {
    CreateTree(static_cast<int>(symbol), codes[symbol]);
  }
}

std::int16_t DecodingTree::NewNode(std::int16_t parent) {
  Require(static_cast<std::size_t>(count_) < nodes_.size());
  nodes_[static_cast<std::size_t>(count_)].ParentNode = parent;
  return static_cast<std::int16_t>(count_++);
}

// A symbol without a code gives the root a value, at which nothing ever looks.
void DecodingTree::CreateTree(int symbol, const SymbolCode& code) {
  std::int16_t at = 0;
  for (std::size_t bit = 0; bit < code.Count; ++bit) {
    HuffmanNode& node = nodes_[static_cast<std::size_t>(at)];
    std::int16_t& child = code.Data[bit] != 0 ? node.RightNode : node.LeftNode;
    if (child == -1) child = NewNode(at);
    at = child;
  }
  nodes_[static_cast<std::size_t>(at)].Value = static_cast<std::int16_t>(symbol);
}

bool DecodingTree::IsComplete() const {
  for (int i = 0; i < count_; ++i) {
    const HuffmanNode& node = nodes_[static_cast<std::size_t>(i)];
    const bool has_left = node.LeftNode != -1;
    const bool has_right = node.RightNode != -1;
    const bool is_inner = i == 0 || node.Value == -1;
    if (has_left != is_inner || has_right != is_inner) return false;
  }
  return true;
}

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
                           ByteBuffer& result, PercentReport& report, Workers& workers) {
  const DecodingTree tree(head.codes);
  DecodingReports reports(report, stream.size(), head.payload_offset);
  std::uint8_t checksum = 0;
  if (stream.size() - head.payload_offset >= kWorthTables && CanDecodeByTables(head, tree)) {
    DecodeByTables(stream, head, result, reports, checksum, workers);
  } else {
    WalkPlainly(stream, head, tree, result, reports);
    checksum = ChecksumOf(result.View());
  }
  return checksum;
}

}  // namespace

void DecodeStream(std::span<const std::uint8_t> stream, ByteBuffer& result, PercentReport& report,
                  Workers& workers) {
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
  const std::uint8_t checksum = DecodePayload(stream, *head, result, report, workers);
  PhaseReports(
      report,
      {.total = static_cast<double>(result.Size()), .step = 10000, .scale = 11, .offset = 89})
      .ReportAll(0, result.Size());
  if (checksum != head->checksum) {
    throw ProgramError(kProgramDefinedError, "clsHuffman.Decode()",
                       "The data might be corrupted (checksum did not match expected value)");
  }
  if (result.Size() == 0) throw ProgramError(kSubscriptOutOfRange);
  report.Report(100);
}

}  // namespace tarnvale
