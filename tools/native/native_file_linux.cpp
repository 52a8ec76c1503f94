#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "hosts/linux/descriptor.h"
#include "hosts/linux/own_links.h"
#include "native/command_failure.h"
#include "native/native_file.h"

namespace tarnvale {
namespace {

// Should the name be that of a pipe, opening it doesn't wait.
constexpr int kFileFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

// `size` bytes, or fewer where the file ends earlier.
ByteBuffer ReadFrom(int file, std::size_t size) {
  ByteBuffer bytes(size);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t got = ::read(file, bytes.Data() + done, size - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw SystemError();
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  bytes.Shrink(done);
  return bytes;
}

}  // namespace

SystemError::SystemError() : SystemError(errno) {}
SystemError::SystemError(int code) : SystemError(std::generic_category().message(code)) {}

Path PathOfNative(const NativeHost& host, const std::string& given) {
  Path path = host.PathOf(std::filesystem::absolute(given).lexically_normal().string());
  if (path.empty()) {
    throw CommandFailure(given, "the program can't name a path with a backslash or a star");
  }
  return path;
}

WholeFile ReadWholeFile(const std::string& native, std::int64_t most_bytes) {
  const Descriptor file = OpenByOwnLinks(AT_FDCWD, native, kFileFlags);
  struct stat info {};
  if (!file || ::fstat(file.Get(), &info) != 0) throw SystemError();
  if (S_ISDIR(info.st_mode)) throw SystemError("is a folder");
  if (!S_ISREG(info.st_mode)) throw SystemError("is no plain file");
  if (info.st_size > most_bytes) throw SystemError("is no archive: too large");
  return {ReadFrom(file.Get(), static_cast<std::size_t>(info.st_size)), info.st_mtim.tv_sec};
}

}  // namespace tarnvale
