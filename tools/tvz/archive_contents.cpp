#include "tvz/archive_contents.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <memory>

#include "base/failure.h"
#include "base/out_of_memory.h"
#include "codec/code_tree.h"
#include "codec/decoding.h"
#include "codec/huffman_stream.h"
#include "hosts/linux/descriptor.h"
#include "hosts/linux/linux_workers.h"
#include "tvz/command_failure.h"
#include "tvz/memory_file.h"
#include "tvz/native_output.h"

namespace tarnvale {
namespace {

// Should the name be that of a pipe, opening it doesn't wait.
constexpr int kOpenFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

std::size_t SizeOfPlain(int file, const std::string& archive) {
  struct stat info {};
  if (::fstat(file, &info) != 0) throw CommandFailure(archive, ReasonOf(errno));
  if (S_ISDIR(info.st_mode)) throw CommandFailure(archive, "is a folder");
  if (!S_ISREG(info.st_mode)) throw CommandFailure(archive, "is no plain file");
  if (info.st_size > std::numeric_limits<std::int32_t>::max()) {
    throw CommandFailure(archive, "is no archive: too large");
  }
  return static_cast<std::size_t>(info.st_size);
}

// `size` bytes, or fewer where the file ends earlier.
ByteBuffer ReadFrom(int file, std::size_t size, const std::string& archive) {
  ByteBuffer bytes(size);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t got = ::read(file, bytes.Data() + done, size - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw CommandFailure(archive, ReasonOf(errno));
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  bytes.Shrink(done);
  return bytes;
}

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
  const Descriptor file(::open(archive.c_str(), kOpenFlags));
  if (!file) throw CommandFailure(archive, ReasonOf(errno));
  try {
    const ByteBuffer stream = ReadFrom(file.Get(), SizeOfPlain(file.Get(), archive), archive);
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
  LinuxWorkers workers;
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
    end += kLengthsBytes + static_cast<std::int64_t>(record.name.size()) + content;
  });
  if (surplus_ != 0) {
    throw CommandFailure(archive_,
                         "is damaged: " + std::to_string(surplus_) + " bytes behind its end");
  }
  sums.bytes_behind = static_cast<std::int64_t>(container_.Size()) - end;
  return sums;
}

}  // namespace tarnvale
