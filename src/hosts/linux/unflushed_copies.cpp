#include "hosts/linux/unflushed_copies.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>

#include "hosts/linux/descriptor.h"
#include "platform/temporary_name.h"

namespace tarnvale {
namespace {

const std::string kName(kUnflushedName);

Descriptor OpenPlain(NativeSpot spot, struct stat& info) {
  constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  Descriptor file(::openat(spot.folder_fd, spot.path, kFlags));
  if (file && (::fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode))) file.Close();
  return file;
}

// When a copy came to its place, or was changed there. FAT knows only when it was made.
std::int64_t LastChange_s(int file, const struct stat& info) {
  struct statx made {};
  const bool is_known = ::statx(file, "", AT_EMPTY_PATH, STATX_BTIME, &made) == 0 &&
                        (made.stx_mask & STATX_BTIME) != 0;
  return std::max<std::int64_t>(info.st_ctim.tv_sec, is_known ? made.stx_btime.tv_sec : 0);
}

// Whether the copy differs where its file has other bytes than zeros. A loss of power leaves
// zeros in a file that was just saved, too, and its copy may be the one that is whole.
bool HasLostBytes(int file, int copy) {
  constexpr std::size_t kBlock = 4096;
  std::array<char, kBlock> ours{};
  std::array<char, kBlock> theirs{};
  for (off_t at = 0;; at += off_t{kBlock}) {
    const ssize_t got = ::pread(file, ours.data(), kBlock, at);
    if (got <= 0 || ::pread(copy, theirs.data(), kBlock, at) != got) return false;
    const auto end = ours.begin() + got;
    if (!std::equal(ours.begin(), end, theirs.begin()) &&
        std::any_of(ours.begin(), end, [](char byte) { return byte != 0; })) {
      return true;
    }
  }
}

}  // namespace

std::optional<std::int64_t> BeginCopies(int folder_fd) {
  struct stat info {};
  if (::fstatat(folder_fd, kName.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0) {
    return info.st_mtim.tv_sec;
  }
  const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  // It need not be flushed: a medium that orders anything has it before what comes later.
  const Descriptor note(::openat(folder_fd, kName.c_str(), flags, 0600));
  return std::nullopt;
}

void EndCopies(int folder_fd) {
  ::unlinkat(folder_fd, kName.c_str(), 0);
}

bool Mistrust(NativeSpot source, NativeSpot copy, std::int64_t since_s) {
  constexpr std::int64_t kCoarsestStep_s = 2;  // FAT's
  struct stat ours {};
  struct stat theirs {};
  const Descriptor to = OpenPlain(copy, theirs);
  if (!to || LastChange_s(to.Get(), theirs) < since_s - kCoarsestStep_s) return false;
  const Descriptor from = OpenPlain(source, ours);
  if (!from || ours.st_mtim.tv_sec != theirs.st_mtim.tv_sec) return false;
  if (ours.st_size == theirs.st_size && !HasLostBytes(from.Get(), to.Get())) return false;
  const std::array<timespec, 2> times{timespec{0, UTIME_OMIT}, timespec{0, 0}};
  return (::fchmod(to.Get(), (theirs.st_mode & 07777) | S_IWUSR) == 0 ||
          (theirs.st_mode & S_IWUSR) != 0) &&
         ::futimens(to.Get(), times.data()) == 0;
}

}  // namespace tarnvale
