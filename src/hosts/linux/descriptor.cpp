#include "hosts/linux/descriptor.h"

#include <cerrno>

namespace tarnvale {

namespace {

// `write` returns as the system's call does.
template <typename Write>
bool WriteInPieces(std::string_view bytes, const Write& write) {
  while (!bytes.empty()) {
    const ssize_t written = write(bytes);
    if (written < 0 && errno == EINTR) continue;
    // A call that took nothing of what it was given would be repeated for ever.
    if (written == 0) errno = EIO;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

bool WriteAll(int fd, std::string_view bytes) {
  return WriteInPieces(
      bytes, [fd](std::string_view left) { return ::write(fd, left.data(), left.size()); });
}

bool WriteAllAt(int fd, off_t position, std::string_view bytes) {
  const char* const begin = bytes.data();
  return WriteInPieces(bytes, [&](std::string_view left) {
    return ::pwrite(fd, left.data(), left.size(), position + (left.data() - begin));
  });
}

}  // namespace tarnvale
