// Stands before the system's library, linked in or loaded before it: below the folder
// that the environment names, the calls by which files are found and made take names for
// one that differ, as FAT and its like do.
//
// Something that is found keeps the name that it was made with. What is made loses points
// and blanks at the end of its name, and accents become one character with their letter.
#include "tests/support/folding_medium.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <clocale>
#include <cstdarg>
#include <cstdlib>
#include <cwchar>
#include <cwctype>
#include <string>
#include <string_view>

namespace tarnvale::testing {
namespace {

std::atomic<long> folders_read = 0;

locale_t Letters() {
  static const locale_t letters = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return letters;
}

std::wstring Wide(const std::string& name) {
  const locale_t before = ::uselocale(Letters());
  std::wstring wide(name.size(), L'\0');
  const std::size_t length = std::mbstowcs(wide.data(), name.c_str(), wide.size());
  ::uselocale(before);
  // Bytes that are no text stay as they are.
  if (length == static_cast<std::size_t>(-1)) return std::wstring(name.begin(), name.end());
  wide.resize(length);
  return wide;
}

std::string Kept(std::string name) {
  struct Form {
    const char* apart;
    const char* whole;
  };
  constexpr std::array kForms{Form{"a\xCC\x88", "ä"}, Form{"o\xCC\x88", "ö"},
                              Form{"u\xCC\x88", "ü"}, Form{"A\xCC\x88", "Ä"},
                              Form{"O\xCC\x88", "Ö"}, Form{"U\xCC\x88", "Ü"},
                              Form{"e\xCC\x81", "é"}, Form{"E\xCC\x81", "É"}};
  for (const Form& form : kForms) {
    const std::string_view apart = form.apart;
    for (auto at = name.find(apart); at != std::string::npos; at = name.find(apart, at)) {
      name.replace(at, apart.size(), form.whole);
    }
  }
  const std::size_t end = name.find_last_not_of(". ") + 1;
  if (end != 0) name.erase(end);
  return name;
}

template <class Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

// A path that is absolute, as far as it needs to be looked at.
std::string Absolute(int folder_fd, const std::string& path) {
  if (path.starts_with('/')) return path;
  std::array<char, PATH_MAX> folder{};
  const std::string link =
      folder_fd == AT_FDCWD ? "/proc/self/cwd" : "/proc/self/fd/" + std::to_string(folder_fd);
  const ssize_t length = ::readlink(link.c_str(), folder.data(), folder.size());
  return std::string(folder.data(), length < 0 ? 0 : static_cast<std::size_t>(length)) + "/" + path;
}

// What a folder of the medium has under this name; what it would have, where there is
// nothing.
std::string NameIn(const std::string& folder, const std::string& name) {
  std::string found;
  DIR* const opened = ::opendir(folder.c_str());
  if (opened == nullptr) return Kept(name);
  const std::string folded = FoldedOnMedium(name);
  while (const dirent* entry = ::readdir(opened)) {
    if (name == entry->d_name || (found.empty() && FoldedOnMedium(entry->d_name) == folded)) {
      found = entry->d_name;
    }
    if (name == found) break;
  }
  ::closedir(opened);
  return found.empty() ? Kept(name) : found;
}

struct Spot {
  int folder_fd;
  std::string path;
};

Spot Resolved(int folder_fd, const char* path) {
  Spot spot{folder_fd, path};
  const char* const medium = std::getenv(kFoldingMedium);
  if (medium == nullptr || spot.path.empty()) return spot;
  const int error = errno;
  const std::string absolute = Absolute(folder_fd, spot.path);
  std::string real = medium;
  if (!absolute.starts_with(real + "/")) return spot;
  for (std::size_t at = real.size() + 1; at < absolute.size();) {
    const std::size_t end = std::min(absolute.find('/', at), absolute.size());
    const std::string name = absolute.substr(at, end - at);
    at = end + 1;
    if (name == "..") return spot;
    if (!name.empty()) real += "/" + (name == "." ? name : NameIn(real, name));
  }
  if (absolute.ends_with('/')) real += '/';
  errno = error;
  return {AT_FDCWD, real};
}

}  // namespace

std::string FoldedOnMedium(const std::string& name) {
  std::string folded;
  for (const wchar_t letter : Wide(Kept(name))) {
    const wint_t capital = ::towupper_l(static_cast<wint_t>(letter), Letters());
    folded += std::to_string(::towlower_l(capital, Letters())) + ' ';
  }
  return folded;
}

long FoldersRead() {
  return folders_read;
}

}  // namespace tarnvale::testing

using tarnvale::testing::Real;
using tarnvale::testing::Resolved;
using tarnvale::testing::Spot;

extern "C" {

int openat(int folder_fd, const char* name, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const bool makes = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  const mode_t mode = makes ? va_arg(more, mode_t) : 0;
  va_end(more);
  const auto spot = Resolved(folder_fd, name);
  return Real<int(int, const char*, int, ...)>("openat")(spot.folder_fd, spot.path.c_str(), flags,
                                                         mode);
}

// By the names that calls have which the compiler checks.
int CheckedOpenAt(int folder_fd, const char* name, int flags) asm("__openat_2");
int CheckedOpen(const char* name, int flags) asm("__open_2");

int CheckedOpenAt(int folder_fd, const char* name, int flags) {
  return openat(folder_fd, name, flags);
}

int open(const char* name, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const bool makes = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  const mode_t mode = makes ? va_arg(more, mode_t) : 0;
  va_end(more);
  return openat(AT_FDCWD, name, flags, mode);
}

int CheckedOpen(const char* name, int flags) {
  return openat(AT_FDCWD, name, flags);
}

// The only one that has no function of its own.
#ifdef __clang__
__attribute__((no_sanitize("address")))  // more arguments are read than were given
#endif
long syscall(long number, ...) noexcept {
  va_list more;
  va_start(more, number);
  std::array<long, 6> arguments{};
  for (long& argument : arguments) argument = va_arg(more, long);
  va_end(more);
  auto [first, second, third, fourth, fifth, sixth] = arguments;
  Spot spot{};
  if (number == SYS_openat2) {
    spot = Resolved(static_cast<int>(first), reinterpret_cast<const char*>(second));
    first = spot.folder_fd;
    second = reinterpret_cast<long>(spot.path.c_str());
  }
  return Real<long(long, ...)>("syscall")(number, first, second, third, fourth, fifth, sixth);
}

int fstatat(int folder_fd, const char* name, struct stat* info, int flags) noexcept {
  const auto spot = Resolved(folder_fd, name);
  return Real<int(int, const char*, struct stat*, int)>("fstatat")(spot.folder_fd,
                                                                   spot.path.c_str(), info, flags);
}

int stat(const char* name, struct stat* info) noexcept {
  return fstatat(AT_FDCWD, name, info, 0);
}

int lstat(const char* name, struct stat* info) noexcept {
  return fstatat(AT_FDCWD, name, info, AT_SYMLINK_NOFOLLOW);
}

int mkdirat(int folder_fd, const char* name, mode_t mode) noexcept {
  const auto spot = Resolved(folder_fd, name);
  return Real<int(int, const char*, mode_t)>("mkdirat")(spot.folder_fd, spot.path.c_str(), mode);
}

int mkdir(const char* name, mode_t mode) noexcept {
  return mkdirat(AT_FDCWD, name, mode);
}

int renameat2(int from_folder, const char* from, int to_folder, const char* to,
              unsigned flags) noexcept {
  const auto source = Resolved(from_folder, from);
  const auto target = Resolved(to_folder, to);
  return Real<int(int, const char*, int, const char*, unsigned)>("renameat2")(
      source.folder_fd, source.path.c_str(), target.folder_fd, target.path.c_str(), flags);
}

int renameat(int from_folder, const char* from, int to_folder, const char* to) noexcept {
  return renameat2(from_folder, from, to_folder, to, 0);
}

int linkat(int from_folder, const char* from, int to_folder, const char* to, int flags) noexcept {
  const auto target = Resolved(to_folder, to);
  return Real<int(int, const char*, int, const char*, int)>("linkat")(
      from_folder, from, target.folder_fd, target.path.c_str(), flags);
}

int symlinkat(const char* text, int folder_fd, const char* name) noexcept {
  const auto spot = Resolved(folder_fd, name);
  return Real<int(const char*, int, const char*)>("symlinkat")(text, spot.folder_fd,
                                                               spot.path.c_str());
}

int unlinkat(int folder_fd, const char* name, int flags) noexcept {
  const auto spot = Resolved(folder_fd, name);
  return Real<int(int, const char*, int)>("unlinkat")(spot.folder_fd, spot.path.c_str(), flags);
}

int utimensat(int folder_fd, const char* name, const timespec times[2], int flags) noexcept {
  const auto spot = Resolved(folder_fd, name);
  return Real<int(int, const char*, const timespec*, int)>("utimensat")(
      spot.folder_fd, spot.path.c_str(), times, flags);
}

DIR* fdopendir(int folder_fd) {
  ++tarnvale::testing::folders_read;
  return Real<DIR*(int)>("fdopendir")(folder_fd);
}

}  // extern "C"
