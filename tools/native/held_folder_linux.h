// A folder that is held by its descriptor.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstddef>
#include <string>

namespace tarnvale {

inline constexpr int kFolderFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

/// Its real native path; empty when that can't be had.
inline std::string RealPathOf(int folder_fd) {
  std::array<char, PATH_MAX> path{};
  const std::string link = "/proc/self/fd/" + std::to_string(folder_fd);
  const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
  if (length <= 0 || static_cast<std::size_t>(length) == path.size()) return {};
  return {path.data(), static_cast<std::size_t>(length)};
}

}  // namespace tarnvale
