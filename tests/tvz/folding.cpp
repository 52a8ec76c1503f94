// Loaded before the system's library: below the folder that TVZ_FOLDING names, a name
// in another case stands for one that is there, as on a medium that folds case.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>

#include <array>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <string>

#include <unistd.h>

namespace {

template <class Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

bool Folds(int folder_fd) {
  const char* const medium = std::getenv("TVZ_FOLDING");
  if (medium == nullptr || folder_fd == AT_FDCWD) return false;
  std::array<char, PATH_MAX> path{};
  const std::string link = "/proc/self/fd/" + std::to_string(folder_fd);
  const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
  const std::string whole(path.data(), length < 0 ? 0 : static_cast<std::size_t>(length));
  return whole == medium || whole.starts_with(std::string(medium) + "/");
}

// The name that the medium has for this one; the same where it has none.
std::string Found(int folder_fd, const char* name) {
  std::string found = name;
  if (found == "." || found.find('/') != std::string::npos || !Folds(folder_fd)) return found;
  auto* const open = Real<int(int, const char*, int, ...)>("openat");
  DIR* const folder = ::fdopendir(open(folder_fd, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder == nullptr) return found;
  while (const dirent* entry = ::readdir(folder)) {
    if (::strcasecmp(entry->d_name, name) == 0) found = entry->d_name;
  }
  ::closedir(folder);
  return found;
}

}  // namespace

extern "C" int openat(int folder_fd, const char* name, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  return Real<int(int, const char*, int, ...)>("openat")(folder_fd, Found(folder_fd, name).c_str(),
                                                         flags, mode);
}

extern "C" int fstatat(int folder_fd, const char* name, struct stat* info, int flags) noexcept {
  return Real<int(int, const char*, struct stat*, int)>("fstatat")(
      folder_fd, Found(folder_fd, name).c_str(), info, flags);
}

extern "C" int mkdirat(int folder_fd, const char* name, mode_t mode) noexcept {
  return Real<int(int, const char*, mode_t)>("mkdirat")(folder_fd, Found(folder_fd, name).c_str(),
                                                        mode);
}

extern "C" int renameat(int from_folder, const char* from, int to_folder, const char* to) noexcept {
  return Real<int(int, const char*, int, const char*)>("renameat")(
      from_folder, Found(from_folder, from).c_str(), to_folder, Found(to_folder, to).c_str());
}
