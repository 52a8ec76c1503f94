#include "hosts/linux/folder_scan.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <utility>

#include "base/failure.h"
#include "hosts/linux/native_errors.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/paths.h"
#include "platform/temporary_name.h"

namespace tarnvale {
namespace {

bool IsDots(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

}  // namespace

FolderScan::FolderScan(Descriptor folder, const Temporaries& temporaries)
    : folder_(nullptr, &::closedir), temporaries_(temporaries) {
  folder_.reset(::fdopendir(folder.Get()));
  if (!folder_) RaiseNative(errno, Attempt::kQuery);
  folder.Release();
}

const dirent* FolderScan::Next() {
  for (;;) {
    errno = 0;
    const dirent* entry = ::readdir(folder_.get());
    if (entry == nullptr) {
      if (errno != 0) RaiseNative(errno, Attempt::kQuery);
      return nullptr;
    }
    const char* name = entry->d_name;
    if (name[0] == '.') {
      if (IsDots(name)) continue;
      if (IsTemporaryName(name)) {
        temporaries_.Sweep(Fd(), name);
        continue;
      }
      if (IsOwnName(name)) continue;
    }
    if (CanBeNamed(name)) return entry;
    left_out_ = true;
  }
}

void SweepFolder(const std::string& folder, const Temporaries& temporaries) {
  PassedOver pass;
  pass.Step([&] {
    FolderScan scan(OpenNativeFolder(folder + "/.", true), temporaries);
    while (scan.Next() != nullptr) continue;
  });
}

Descriptor OpenNativeFolder(const std::string& folder, bool follow, FolderUse use) {
  const int flags = static_cast<int>(use) | O_DIRECTORY | O_CLOEXEC;
  Descriptor fd = follow ? OpenByOwnLinks(AT_FDCWD, folder, flags)
                         : Descriptor(::open(folder.c_str(), flags | O_NOFOLLOW));
  if (fd) return fd;
  if (errno == ENOENT || errno == ENOTDIR || errno == ELOOP || errno == ENAMETOOLONG) {
    throw ProgramError(kPathNotFound);
  }
  RaiseNative(errno, Attempt::kQuery);
}

Descriptor OpenInnerFolder(int folder_fd, std::string_view names, FolderUse use) {
  if (names.size() >= PATH_MAX) throw ProgramError(kPathNotFound);
  constexpr int kFolder = O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  Descriptor inner;
  for (std::size_t at = 0; at < names.size();) {
    const std::size_t end = std::min(names.find('/', at), names.size());
    const std::string name(names.substr(at, end - at));
    if (name.empty() || IsDots(name.c_str())) throw ProgramError(kPathNotFound);
    // A folder on the way need only be one that can be entered.
    inner = Descriptor(::openat(inner ? inner.Get() : folder_fd, name.c_str(), O_PATH | kFolder));
    if (!inner) break;
    at = end + 1;
  }
  if (inner || names.empty()) {
    const int holder = inner ? inner.Get() : folder_fd;
    inner = Descriptor(::openat(holder, ".", static_cast<int>(use) | kFolder));
  }
  if (inner) return inner;
  if (errno == ENOENT || errno == ENOTDIR || errno == ELOOP || errno == ENAMETOOLONG) {
    throw ProgramError(kPathNotFound);
  }
  RaiseNative(errno, Attempt::kQuery);
}

}  // namespace tarnvale
