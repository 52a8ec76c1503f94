#include "hosts/linux/atomic_copy.h"

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "base/failure.h"
#include "hosts/linux/archive_bit.h"
#include "hosts/linux/copy_data.h"
#include "hosts/linux/descriptor.h"
#include "hosts/linux/file_state.h"
#include "hosts/linux/native_errors.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/replacement.h"

namespace tarnvale {
namespace {

constexpr mode_t kPermissions = 07777;
constexpr mode_t kOwnersAlone = 0600;

Descriptor OpenSource(NativeSpot source, Links links, struct stat& info) {
  // Should a pipe have come into the file's place meanwhile, this doesn't wait; nor
  // does it follow a link that came there.
  constexpr int kFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  Descriptor file = links == Links::kFollow
                        ? OpenByOwnLinks(source.folder_fd, source.path, kFlags)
                        : Descriptor(::openat(source.folder_fd, source.path, kFlags | O_NOFOLLOW));
  if (!file) RaiseNative(errno == ENOTDIR ? ENOENT : errno, Attempt::kChange);
  if (::fstat(file.Get(), &info) != 0) RaiseNative(errno, Attempt::kChange);
  if (S_ISDIR(info.st_mode)) throw ProgramError(kFileNotFound);
  if (!S_ISREG(info.st_mode)) throw ProgramError(kPermissionDenied);
  return file;
}

[[noreturn]] void RaiseForTarget(int error) {
  // What is missing here is the folder.
  if (error == ENOENT) throw ProgramError(kPathNotFound);
  RaiseNative(error, Attempt::kChange);
}

// True for attributes that belong to the content; others belong to the place.
bool GoesWithCopy(std::string_view name, Rights rights) {
  if (name == kArchivedAttribute) return false;
  return name.starts_with("user.") ||
         (rights == Rights::kSource && name.starts_with("system.posix_acl_"));
}

// What a loss of power, or of the medium, left of a copy of this very state.
bool IsCutShort(const struct stat& source, const struct stat& copy) {
  return S_ISREG(source.st_mode) && copy.st_size < source.st_size &&
         AreOneTime(source.st_mtim, copy.st_mtim);
}

// What the user's mask takes from new files.
mode_t UserMask() {
  const mode_t mask = ::umask(077);
  ::umask(mask);
  return mask;
}

bool LinkNameless(int file, NativeSpot target) {
  if (::linkat(file, "", target.folder_fd, target.path, AT_EMPTY_PATH) == 0) return true;
  if (errno == EEXIST) return false;
  // Older kernels allow that to the superuser only.
  const std::string file_link = "/proc/self/fd/" + std::to_string(file);
  return ::linkat(AT_FDCWD, file_link.c_str(), target.folder_fd, target.path, AT_SYMLINK_FOLLOW) ==
         0;
}

// Those that a file has whose place a copy takes: what it let nobody read, its
// successor doesn't either. All for anything else, and for nothing.
mode_t PermissionsThere(NativeSpot target) {
  struct stat there {};
  const bool is_file = ::fstatat(target.folder_fd, target.path, &there, AT_SYMLINK_NOFOLLOW) == 0 &&
                       S_ISREG(there.st_mode);
  return is_file ? there.st_mode & 0777 : 0777;
}

// `made`: what the system gave the new file. Set-id bits lend the owner's rights,
// and on a medium any owner can be written: no copy has them.
mode_t PermissionsFor(Rights rights, mode_t source, mode_t made) {
  switch (rights) {
    case Rights::kOwner:
      return kOwnersAlone;
    case Rights::kNewFile:
      return source & made & 0777;
    default:
      return source & 0777;
  }
}

bool HaveSameBytes(int a, int b) {
  std::vector<char> bytes_a(65536);
  std::vector<char> bytes_b(bytes_a.size());
  for (off_t at = 0;;) {
    const ssize_t got_a = ::pread(a, bytes_a.data(), bytes_a.size(), at);
    const ssize_t got_b = ::pread(b, bytes_b.data(), bytes_b.size(), at);
    if (got_a < 0 || got_a != got_b ||
        !std::equal(bytes_a.begin(), bytes_a.begin() + got_a, bytes_b.begin())) {
      return false;
    }
    if (got_a == 0) return true;
    at += got_a;
  }
}

// FAT keeps times in steps of two seconds: this system rounds them down, so that a file on
// the computer seems newer than its copy in each run; others round up, and a copy on its
// way back would replace its original. Away from the computer permissions go along, so
// only the time that this system would make is taken for such a one.
bool MayBeCoarse(const struct stat& source, const struct stat& target, Rights rights) {
  constexpr std::int64_t kStep_s = 2;
  const std::int64_t apart_s = source.st_mtim.tv_sec - target.st_mtim.tv_sec;
  if (!S_ISREG(target.st_mode) || source.st_size != target.st_size || apart_s == 0) return false;
  if (rights == Rights::kNewFile) return apart_s >= -kStep_s && apart_s <= kStep_s;
  return target.st_mtim.tv_nsec == 0 && target.st_mtim.tv_sec % kStep_s == 0 && apart_s > 0 &&
         apart_s < kStep_s;
}

// Media that can't hold links refuse to make one in these ways.
bool MeansNoLinks(int error) {
  return error == EPERM || error == EOPNOTSUPP || error == ENOSYS;
}

void Commit(Replacement& file, const CopyTarget& target) {
  if (!target.only_as_seen) {
    file.Commit(target.spot.path);
  } else if (target.is_new) {
    file.CommitNew(target.spot.path);
  } else {
    file.CommitOver(target.spot.path, target.seen);
  }
}

}  // namespace

void CopyExtendedAttributes(int source, int target, Rights rights) {
  std::array<char, 1024> small{};
  ssize_t length = ::flistxattr(source, small.data(), small.size());
  if (length == 0) return;
  std::vector<char> names(small.begin(), small.end());
  if (length < 0 && errno == ERANGE) {
    names.resize(65536);
    length = ::flistxattr(source, names.data(), names.size());
  }
  std::vector<char> value;
  for (ssize_t at = 0; at < length;) {
    const char* name = names.data() + at;
    at += static_cast<ssize_t>(std::strlen(name)) + 1;
    if (!GoesWithCopy(name, rights)) continue;
    value.resize(65536);
    const ssize_t size = ::fgetxattr(source, name, value.data(), value.size());
    // Chosen: what the target's medium can't hold is left out; the content counts.
    if (size >= 0) ::fsetxattr(target, name, value.data(), static_cast<std::size_t>(size), 0);
  }
}

bool MayReplace(const struct stat& source, const struct stat& target) {
  if (AreOneFile(source, target)) return false;
  if (S_ISLNK(target.st_mode)) return true;
  if (S_ISLNK(source.st_mode) && S_ISDIR(target.st_mode)) throw ProgramError(kFileAlreadyExists);
  const bool is_closed = IsReadOnly(target) && !IsCutShort(source, target);
  if (!S_ISREG(target.st_mode) || is_closed) throw ProgramError(kPathFileAccess);
  return true;
}

bool IsThere(NativeSpot target, struct stat& info) {
  if (::fstatat(target.folder_fd, target.path, &info, AT_SYMLINK_NOFOLLOW) == 0) return true;
  if (errno == ENOENT) return false;
  RaiseNative(errno, Attempt::kChange);
}

// Both extended attributes and content can be written, whatever comes later.
mode_t AtomicCopy::CreationMode(const Source& source) {
  mode_t mode = source.rights == Rights::kOwner ? 0 : source.info.st_mode & 0777;
  // For a file without a name older kernels forget it.
  if (source.rights == Rights::kNewFile) mode &= source.allowed & ~UserMask();
  return mode | kOwnersAlone;
}

void AtomicCopy::CopyProperties(const Source& source, int target) {
  CopyExtendedAttributes(source.file.Get(), target, source.rights);
  struct stat made {};
  if (::fstat(target, &made) != 0) RaiseNative(errno, Attempt::kChange);
  const mode_t wanted = PermissionsFor(source.rights, source.info.st_mode, made.st_mode);
  // A medium without permissions refuses some; the content counts.
  if ((made.st_mode & kPermissions) != wanted) ::fchmod(target, wanted);
  const std::array<timespec, 2> times{source.info.st_atim, source.info.st_mtim};
  if (::futimens(target, times.data()) != 0 && errno == EIO) RaiseNative(errno, Attempt::kChange);
}

void AtomicCopy::CopyInto(const Source& source, int target) {
  CopyData(source.file.Get(), target, source.info);
  CopyProperties(source, target);
  if (source.flush == Flush::kYes && ::fsync(target) != 0) RaiseNative(errno, Attempt::kChange);
}

struct stat AtomicCopy::CopyFile(NativeSpot source, CopyManner manner, const CopyTarget& target) {
  Source from;
  from.rights = manner.rights;
  from.flush = manner.flush;
  from.file = OpenSource(source, manner.links, from.info);
  if (!target.is_new && from.rights == Rights::kNewFile) {
    from.allowed = PermissionsThere(target.spot);
  }
  if (!target.is_new || !CopyNameless(from, target)) CopyNamed(from, target);
  return from.info;
}

bool AtomicCopy::TakeTime(NativeSpot source, Rights rights, const CopyTarget& target) {
  if (target.is_new) return false;
  struct stat info {};
  const Descriptor from = OpenSource(source, Links::kKeep, info);
  if (!MayBeCoarse(info, target.seen, rights)) return false;
  constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const Descriptor to(::openat(target.spot.folder_fd, target.spot.path, kFlags));
  if (!to || !HaveSameBytes(from.Get(), to.Get())) return false;
  struct stat now {};
  // Whatever was written meanwhile is newer.
  if (::fstat(to.Get(), &now) != 0 || now.st_ino != target.seen.st_ino ||
      !AreOneTime(now.st_mtim, target.seen.st_mtim)) {
    return false;
  }
  const std::array<timespec, 2> times{timespec{0, UTIME_OMIT}, info.st_mtim};
  return ::futimens(to.Get(), times.data()) == 0;
}

// Writes a file that has no name until it is whole: nothing is left of it
// wherever the process ends, and it is faster than a temporary name. False when
// the medium knows no such files, or when something has the name by now.
bool AtomicCopy::CopyNameless(const Source& source, const CopyTarget& target) {
  const int flags = O_WRONLY | O_TMPFILE | O_CLOEXEC;
  Descriptor to(::openat(target.spot.folder_fd, ".", flags, CreationMode(source)));
  if (!to) return false;
  CopyInto(source, to.Get());
  if (!LinkNameless(to.Get(), target.spot)) {
    if (errno == EEXIST && target.only_as_seen) throw ProgramError(kFileAlreadyExists);
    return false;
  }
  if (!to.Close()) RaiseNative(errno, Attempt::kChange);
  return true;
}

void AtomicCopy::CopyNamed(const Source& source, const CopyTarget& target) {
  Replacement to(slot_, target.folder, target.spot.folder_fd);
  if (!to.Create(CreationMode(source))) RaiseForTarget(errno);
  // It may have been read before.
  if (target.is_new) ::lseek(source.file.Get(), 0, SEEK_SET);
  CopyInto(source, to.Fd());
  Commit(to, target);
}

bool AtomicCopy::CopyLink(NativeSpot source, const struct stat& info, const CopyTarget& target) {
  std::array<char, PATH_MAX> text{};
  const ssize_t length = ::readlinkat(source.folder_fd, source.path, text.data(), text.size() - 1);
  if (length < 0) RaiseNative(errno, Attempt::kChange);
  text[static_cast<std::size_t>(length)] = '\0';
  Replacement to(slot_, target.folder, target.spot.folder_fd);
  const bool made = to.CreateLink(text.data());
  // Chosen: passed over like a device, so that it doesn't keep others from
  // being copied.
  if (!made && MeansNoLinks(errno)) return false;
  if (!made) RaiseForTarget(errno);
  const std::array<timespec, 2> times{info.st_atim, info.st_mtim};
  ::utimensat(target.spot.folder_fd, to.Path(), times.data(), AT_SYMLINK_NOFOLLOW);
  Commit(to, target);
  return true;
}

}  // namespace tarnvale
