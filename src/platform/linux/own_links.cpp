#include "platform/linux/own_links.h"

#include <fcntl.h>
#include <limits.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>

namespace tarnvale {
namespace {

constexpr int kMostLinks = 40;

// Chosen: the administrator's links on the system's own file system count as the
// user's. Elsewhere the number of their owner is what the medium's author wrote.
bool MayFollow(const struct stat& link) {
  if (link.st_uid == ::geteuid()) return true;
  struct stat root {};
  return link.st_uid == 0 && ::stat("/", &root) == 0 && root.st_dev == link.st_dev;
}

// Goes one link on from the end of a path. False when that isn't possible, with
// `errno` set: EINVAL where there is no link, EACCES for one of somebody else.
bool GoOn(int folder_fd, std::string& path) {
  // Held open, so that nobody can turn it between the question and the reading.
  const Descriptor link(::openat(folder_fd, path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  struct stat info {};
  if (!link || ::fstat(link.Get(), &info) != 0) return false;
  if (!S_ISLNK(info.st_mode) || !MayFollow(info)) {
    errno = S_ISLNK(info.st_mode) ? EACCES : EINVAL;
    return false;
  }
  std::array<char, PATH_MAX> text{};
  const ssize_t length = ::readlinkat(link.Get(), "", text.data(), text.size());
  if (length <= 0) return false;
  std::string_view target(text.data(), static_cast<std::size_t>(length));
  // A slash at the end would have a link there followed unasked.
  while (target.size() > 1 && target.back() == '/') target.remove_suffix(1);
  const std::size_t slash = path.rfind('/');
  path.erase(target.front() == '/' || slash == std::string::npos ? 0 : slash + 1);
  path += target;
  return true;
}

}  // namespace

Descriptor OpenByOwnLinks(int folder_fd, std::string path, int flags, mode_t mode) {
  for (int i = 0; i <= kMostLinks; ++i) {
    Descriptor opened(::openat(folder_fd, path.c_str(), flags | O_NOFOLLOW | O_CLOEXEC, mode));
    // A link that is asked for a folder counts as none.
    if (opened || (errno != ELOOP && errno != ENOTDIR)) return opened;
    const int error = errno;
    if (GoOn(folder_fd, path)) continue;
    if (errno == EINVAL) errno = error;
    return {};
  }
  errno = ELOOP;
  return {};
}

bool GoByOwnLinks(int folder_fd, std::string& path, struct stat& info) {
  for (int i = 0; i <= kMostLinks; ++i) {
    if (::fstatat(folder_fd, path.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) return false;
    if (!S_ISLNK(info.st_mode)) return true;
    if (!GoOn(folder_fd, path) && errno != EINVAL) return false;
  }
  errno = ELOOP;
  return false;
}

}  // namespace tarnvale
