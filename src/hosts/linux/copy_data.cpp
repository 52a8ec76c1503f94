#include "hosts/linux/copy_data.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <vector>

#include "hosts/linux/descriptor.h"
#include "hosts/linux/native_errors.h"

namespace tarnvale {
namespace {

constexpr std::size_t kBufferBytes = std::size_t{256} * 1024;
constexpr off_t kBlockBytes = 512;  // the unit of st_blocks, whatever the medium
// One call can't be interrupted by much more than this.
constexpr std::size_t kMostAtOnce = std::size_t{64} * 1024 * 1024;

// As CopyRange, through memory.
off_t CopyByBuffer(int source, int target, off_t most) {
  static thread_local std::vector<char> buffer(kBufferBytes);
  off_t done = 0;
  while (done < most) {
    const auto wanted = std::min<off_t>(most - done, static_cast<off_t>(buffer.size()));
    const ssize_t got = ::read(source, buffer.data(), static_cast<std::size_t>(wanted));
    if (got < 0) {
      if (errno == EINTR) continue;
      RaiseNative(errno, Attempt::kChange);
    }
    if (got == 0) break;
    if (!WriteAll(target, {buffer.data(), static_cast<std::size_t>(got)})) {
      RaiseNative(errno, Attempt::kChange);
    }
    done += got;
  }
  return done;
}

// Errors that only say that the kernel can't copy between these two.
bool MeansUnsupported(int error) {
  return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP ||
         error == EPERM || error == EBADF || error == ETXTBSY;
}

// False when the file system doesn't know where data lies.
bool CopySparse(int source, int target, off_t size) {
  off_t end = 0;
  while (end < size) {
    const off_t start = ::lseek(source, end, SEEK_DATA);
    if (start < 0 && errno == ENXIO) break;  // a hole up to the end
    if (start < 0) return false;
    end = ::lseek(source, start, SEEK_HOLE);
    if (end < 0 || ::lseek(source, start, SEEK_SET) < 0 || ::lseek(target, start, SEEK_SET) < 0) {
      RaiseNative(errno, Attempt::kChange);
    }
    CopyRange(source, target, end - start);
  }
  if (::ftruncate(target, size) != 0) RaiseNative(errno, Attempt::kChange);
  return true;
}

}  // namespace

off_t CopyRange(int source, int target, off_t most) {
  off_t done = 0;
  while (done < most) {
    const auto wanted = std::min(static_cast<std::size_t>(most - done), kMostAtOnce);
    const ssize_t got = ::copy_file_range(source, nullptr, target, nullptr, wanted, 0);
    if (got > 0) {
      done += got;
    } else if (got == 0 || MeansUnsupported(errno)) {
      // Some file systems give 0 instead of their bytes: only reading shows which.
      return done + CopyByBuffer(source, target, most - done);
    } else if (errno != EINTR) {
      RaiseNative(errno, Attempt::kChange);
    }
  }
  return done;
}

void CopyData(int source, int target, const struct stat& info) {
  if (info.st_size > 0 && info.st_size <= static_cast<off_t>(kBufferBytes)) {
    CopyByBuffer(source, target, info.st_size);
    return;
  }
  const bool has_holes = info.st_blocks < info.st_size / kBlockBytes;
  if (has_holes && CopySparse(source, target, info.st_size)) return;
  // Files of the system itself say 0 and hold more: these are read to the end.
  const off_t most = info.st_size > 0 ? info.st_size : off_t{1} << 40U;
  if (info.st_size > 0) {
    CopyRange(source, target, most);
  } else {
    CopyByBuffer(source, target, most);
  }
}

}  // namespace tarnvale
