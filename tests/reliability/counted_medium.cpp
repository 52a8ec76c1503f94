#include "tests/reliability/counted_medium.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>

namespace tarnvale::reliability {
namespace {

namespace fs = std::filesystem;

std::string medium;
std::uint64_t room = 0;

bool IsOnMedium(int file) {
  std::error_code error;
  const fs::path link = "/proc/self/fd/" + std::to_string(file);
  return !medium.empty() && fs::read_symlink(link, error).string().starts_with(medium + "/");
}

// Files without a name yet are the one being written at most.
std::uint64_t Used(int file) {
  std::uint64_t used = 0;
  for (const auto& entry : fs::recursive_directory_iterator(medium)) {
    if (entry.is_regular_file()) used += entry.file_size();
  }
  struct stat info {};
  if (::fstat(file, &info) == 0 && info.st_nlink == 0)
    used += static_cast<std::uint64_t>(info.st_size);
  return used;
}

// How many of so many bytes still fit. All of these are new bytes: nobody writes
// over what a file has.
std::size_t Fitting(int file, std::size_t bytes) {
  if (!IsOnMedium(file)) return bytes;
  return static_cast<std::size_t>(
      std::min<std::uint64_t>(bytes, room - std::min(room, Used(file))));
}

ssize_t WithoutRoom() {
  errno = ENOSPC;
  return -1;
}

}  // namespace

void LimitRoom(const fs::path& folder, std::uint64_t room_bytes) {
  medium = folder;
  room = room_bytes;
}

}  // namespace tarnvale::reliability

// These take the place of the system's own, for everything that is linked to the program.

extern "C" ssize_t write(int file, const void* bytes, size_t size) {
  const std::size_t fitting = tarnvale::reliability::Fitting(file, size);
  if (size > 0 && fitting == 0) return tarnvale::reliability::WithoutRoom();
  return ::syscall(SYS_write, file, bytes, fitting);
}

extern "C" ssize_t copy_file_range(int source, off64_t* source_at, int target, off64_t* target_at,
                                   size_t size, unsigned flags) {
  const std::size_t fitting = tarnvale::reliability::Fitting(target, size);
  if (size > 0 && fitting == 0) return tarnvale::reliability::WithoutRoom();
  return ::syscall(SYS_copy_file_range, source, source_at, target, target_at, fitting, flags);
}
