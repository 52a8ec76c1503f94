#include "tvz/archive_contents.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

#include "base/failure.h"
#include "base/out_of_memory.h"
#include "codec/code_tree.h"
#include "codec/decoding.h"
#include "codec/huffman_stream.h"
#include "native/native_file.h"
#include "tvz/memory_file.h"

namespace tarnvale {
namespace {

bool StartsWith(const ByteBuffer& bytes, const std::array<std::uint8_t, kMarkBytes>& mark) {
  return bytes.Size() >= mark.size() && std::equal(mark.begin(), mark.end(), bytes.Data());
}

std::string WrongWith(const ProgramError& error) {
  switch (error.Number()) {
    case kOutOfMemory:
      return error.Description();
    case kProgramDefinedError:
      return "is damaged: the checksum is wrong";
    case kInputPastEnd:
      return "is damaged: it ends in the middle of an entry";
    case kInvalidCall:
      return "is damaged: an entry has a length below zero";
    default:
      return "is damaged or cut off";
  }
}

// Bytes of a compressed stream behind the payload that gives `result`.
std::int64_t SurplusOf(const ByteBuffer& stream, const ByteBuffer& result) {
  const auto head = std::make_unique<StreamHead>();
  ReadHead(stream.View(), *head);
  SymbolCounter counter;
  counter.Add(result.View());
  const SymbolCounts counts = counter.Sum();
  std::int64_t bits = 0;
  for (std::size_t value = 0; value < kSymbols; ++value) {
    bits += std::int64_t{counts[value]} * head->codes[value].Count;
  }
  const auto end = static_cast<std::int64_t>(head->payload_offset) + (bits + 7) / 8;
  return static_cast<std::int64_t>(stream.Size()) - end;
}

}  // namespace

ArchiveContents::ArchiveContents(const std::string& archive, Progress& progress)
    : archive_(archive) {
  try {
    const WholeFile file = About(
        archive, [&] { return ReadWholeFile(archive, std::numeric_limits<std::int32_t>::max()); });
    const ByteBuffer& stream = file.bytes;
    modified_s_ = file.modified_s;
    // Chosen: a foreign file is refused by its mark, which the codec alone
    // wouldn't do.
    if (!StartsWith(stream, kStoredMark) && !StartsWith(stream, kCompressedMark)) {
      throw CommandFailure(archive, "is no archive of Tarnvale");
    }
    Decode(stream, progress);
  } catch (const ProgramError& error) {
    throw CommandFailure(archive, WrongWith(error));
  }
}

void ArchiveContents::Decode(const ByteBuffer& stream, Progress& progress) {
  PercentReport report([&](std::int16_t percent) { progress.Show("decoding", percent); });
  NativeWorkers workers;
  DecodeStream(stream.View(), container_, report, workers);
  if (StartsWith(stream, kStoredMark)) return;
  // Half of a payload can have the checksum of the whole.
  const std::int64_t announced = AnnouncedLength(stream.View());
  if (static_cast<std::int64_t>(container_.Size()) != announced) {
    throw ProgramError(kSubscriptOutOfRange);
  }
  surplus_ = SurplusOf(stream, container_);
}

void ArchiveContents::ForEach(const Visitor& visit) const {
  MemoryFile file(container_.View());
  ContainerReader reader(file, MemoryFile::kNumber);
  const auto guarded = [&](const auto& read) {
    try {
      return read();
    } catch (const ProgramError& error) {
      throw CommandFailure(archive_, WrongWith(error));
    }
  };
  const std::int32_t count = guarded([&] { return reader.ReadCount(); });
  if (count < 0) throw CommandFailure(archive_, "is damaged: fewer than no entries");
  ContainerRecord record;
  for (std::int32_t i = 0; i < count; ++i) {
    guarded([&] { reader.ReadRecord(record); });
    visit(record);
  }
}

ArchiveContents::Sums ArchiveContents::CheckWhole() const {
  constexpr std::int64_t kCountBytes = 4;
  constexpr std::int64_t kLengthsBytes = 6;  // of one record
  Sums sums;
  std::int64_t end = kCountBytes;
  ForEach([&](const ContainerRecord& record) {
    const auto content = static_cast<std::int64_t>(record.content.Size());
    ++sums.entries;
    sums.content_bytes += content;
    end += kLengthsBytes + static_cast<std::int64_t>(record.name_bytes) + content;
  });
  if (surplus_ != 0) {
    throw CommandFailure(archive_,
                         "is damaged: " + std::to_string(surplus_) + " bytes behind its end");
  }
  sums.bytes_behind = static_cast<std::int64_t>(container_.Size()) - end;
  return sums;
}

}  // namespace tarnvale
