#include "hosts/linux/own_links.h"

#include <fcntl.h>
#include <limits.h>
#include <linux/openat2.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <utility>

#include "hosts/linux/state_folder.h"

namespace tarnvale {
namespace {

constexpr int kMostLinks = 40;
constexpr int kOnlyThere = O_PATH | O_NOFOLLOW | O_CLOEXEC;

// Chosen: on a medium that the system gives no rights to (`nosuid`), the owner of a file is
// whoever its author wrote there, other than where the system and the user are at home.
bool IsOwnerTrue(const Descriptor& file, const struct stat& info) {
  struct statvfs medium {};
  if (::fstatvfs(file.Get(), &medium) == 0 && (medium.f_flag & ST_NOSUID) == 0) return true;
  const std::array<std::string, 3> homes{"/", "/tmp", HomeFolder()};
  return std::any_of(homes.begin(), homes.end(), [&](const std::string& home) {
    struct stat at_home {};
    return ::stat(home.c_str(), &at_home) == 0 && at_home.st_dev == info.st_dev;
  });
}

// The administrator's links count as the user's, as his programs do.
bool MayFollow(const Descriptor& link, const struct stat& info) {
  struct stat root {};
  const bool is_friendly =
      info.st_uid == ::geteuid() || (::stat("/", &root) == 0 && info.st_uid == root.st_uid);
  return is_friendly && IsOwnerTrue(link, info);
}

// Where a link leads. Empty when it isn't followed, with `errno` set: EINVAL where
// there is no link, EACCES for one of somebody else.
std::string TargetOf(const Descriptor& link) {
  struct stat info {};
  if (::fstat(link.Get(), &info) != 0) return {};
  if (!S_ISLNK(info.st_mode) || !MayFollow(link, info)) {
    errno = S_ISLNK(info.st_mode) ? EACCES : EINVAL;
    return {};
  }
  std::array<char, PATH_MAX> text{};
  const ssize_t length = ::readlinkat(link.Get(), "", text.data(), text.size());
  return {text.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

// Opens a folder one name after the other.
Descriptor WalkTo(int folder_fd, std::string left) {
  Descriptor folder;
  const auto begin = [&] {
    folder = Descriptor(::openat(folder_fd, left.front() == '/' ? "/" : ".", kOnlyThere));
  };
  begin();
  for (int links = 0; folder && !left.empty();) {
    const std::string name = left.substr(0, left.find('/'));
    left.erase(0, name.size() + 1);
    if (name.empty()) continue;
    Descriptor next(::openat(folder.Get(), name.c_str(), kOnlyThere));
    if (!next) return {};
    std::string target = TargetOf(next);
    if (target.empty()) {
      // No link: as likely no folder, which the next name will show.
      if (errno != EINVAL) return {};
      folder = std::move(next);
      continue;
    }
    if (++links > kMostLinks) {
      errno = ELOOP;
      return {};
    }
    left = target + "/" + left;
    if (target.front() == '/') begin();
  }
  return folder;
}

int OpenWithoutLinks(int folder_fd, const std::string& path, int flags, mode_t mode) {
  const open_how how{
      .flags = static_cast<__u64>(flags), .mode = mode, .resolve = RESOLVE_NO_SYMLINKS};
  return static_cast<int>(::syscall(SYS_openat2, folder_fd, path.c_str(), &how, sizeof how));
}

// Whether opening without links failed for a link on the way, or for a system that doesn't
// know this call. A link where a folder is wanted counts as none.
bool MayHaveLinks(int error) {
  return error == ELOOP || error == ENOTDIR || error == ENOSYS || error == EPERM;
}

// The end of a path and the folder that it lies in.
struct End {
  Descriptor folder;
  std::string name;
};

End EndOf(int folder_fd, const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {WalkTo(folder_fd, "."), path};
  const std::string folder = path.substr(0, slash + 1);
  Descriptor opened(OpenWithoutLinks(folder_fd, folder, O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
  if (!opened && MayHaveLinks(errno)) {
    opened = WalkTo(folder_fd, folder);
  }
  return {std::move(opened), path.substr(slash + 1)};
}

// Goes one link on from the end of a path. False when that isn't possible, with
// `errno` set as by TargetOf.
bool GoOn(const End& end, std::string& path) {
  // Held open, so that nobody can turn it between the question and the reading.
  const Descriptor link(::openat(end.folder.Get(), end.name.c_str(), kOnlyThere));
  if (!link) return false;
  std::string target = TargetOf(link);
  if (target.empty()) return false;
  // A slash at the end would have a link there followed unasked.
  while (target.size() > 1 && target.back() == '/') target.pop_back();
  path.erase(target.front() == '/' ? 0 : path.size() - end.name.size());
  path += target;
  return true;
}

}  // namespace

Descriptor OpenByOwnLinks(int folder_fd, std::string path, int flags, mode_t mode) {
  // Most paths have no link in them, and the kernel opens those in one call.
  Descriptor straight(OpenWithoutLinks(folder_fd, path, flags | O_NOFOLLOW | O_CLOEXEC, mode));
  if (straight || !MayHaveLinks(errno)) return straight;
  for (int i = 0; i <= kMostLinks; ++i) {
    const End end = EndOf(folder_fd, path);
    if (!end.folder) return {};
    Descriptor opened(
        ::openat(end.folder.Get(), end.name.c_str(), flags | O_NOFOLLOW | O_CLOEXEC, mode));
    // A link where a folder is wanted counts as none.
    if (opened || (errno != ELOOP && errno != ENOTDIR)) return opened;
    const int error = errno;
    if (GoOn(end, path)) continue;
    if (errno == EINVAL) errno = error;
    return {};
  }
  errno = ELOOP;
  return {};
}

bool GoByOwnLinks(int folder_fd, std::string& path, struct stat& info) {
  for (int i = 0; i <= kMostLinks; ++i) {
    const End end = EndOf(folder_fd, path);
    if (!end.folder ||
        ::fstatat(end.folder.Get(), end.name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) {
      return false;
    }
    if (!S_ISLNK(info.st_mode)) return true;
    if (!GoOn(end, path) && errno != EINVAL) return false;
  }
  errno = ELOOP;
  return false;
}

}  // namespace tarnvale
