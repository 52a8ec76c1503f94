#include "hosts/linux/read_data.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <optional>
#include <vector>

#include "base/failure.h"
#include "hosts/linux/linux_workers.h"

namespace tarnvale {
namespace {

constexpr std::size_t kPieceBytes = std::size_t{4} << 20U;
constexpr std::size_t kMostHelpers = 3;

// How many bytes were read; none after a failure.
std::optional<std::size_t> ReadPiece(int file, off_t position, std::span<std::uint8_t> bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t got = ::pread(file, bytes.data() + done, bytes.size() - done,
                                position + static_cast<off_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

}  // namespace

// Half of the time goes by in new pages, and two processors make twice as many.
std::size_t ReadData(int file, off_t position, std::span<std::uint8_t> bytes) {
  const std::size_t count = std::max<std::size_t>(bytes.size() / kPieceBytes, 1);
  if (count == 1) {
    const auto read = ReadPiece(file, position, bytes);
    if (!read) throw ProgramError(kDeviceIoError);
    return *read;
  }
  std::vector<std::optional<std::size_t>> read(count);
  const auto piece = [&](std::size_t i) {
    const std::size_t begin = i * kPieceBytes;
    return bytes.subspan(begin, (i + 1 < count ? begin + kPieceBytes : bytes.size()) - begin);
  };
  std::atomic<std::size_t> next = 0;
  LinuxWorkers workers;
  workers.WillFill(bytes);
  workers.Run(kMostHelpers, [&] {
    for (std::size_t i = next++; i < count; i = next++) {
      read[i] = ReadPiece(file, position + static_cast<off_t>(i * kPieceBytes), piece(i));
    }
  });
  // As one reader would find it.
  std::size_t done = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (!read[i]) throw ProgramError(kDeviceIoError);
    done += *read[i];
    if (*read[i] < piece(i).size()) break;
  }
  return done;
}

}  // namespace tarnvale
