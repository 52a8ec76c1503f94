// What belongs to another user or lies on somebody's medium, where no second user can be
// played and nothing mounted: a layer between a program and the C library that says so
// of the files in its list. Tests are linked to it; the programs that they start load it.
//
//   TARNVALE_OF_ANOTHER=" DEVICE:INODE DEVICE:INODE "  files of another user
//   TARNVALE_ON_A_MEDIUM=" DEVICE:INODE "               files on a medium, mounted as such
//   TARNVALE_AS_USER=NUMBER                             the user the user the user who runs the
//   program
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr uid_t kAnother = 54321;
constexpr dev_t kMedium = 0xFEED;

template <typename Function>
Function* Real(const char* name) {
  void* const found = ::dlsym(RTLD_NEXT, name);
  Function* function = nullptr;
  std::memcpy(&function, &found, sizeof function);
  return function;
}

bool IsListed(const char* list, std::uint64_t device, std::uint64_t inode) {
  const char* const listed = ::getenv(list);
  if (listed == nullptr) return false;
  const std::string entry = " " + std::to_string(device) + ":" + std::to_string(inode) + " ";
  return std::strstr(listed, entry.c_str()) != nullptr;
}

int Faked(int result, struct stat* info) {
  if (result != 0) return result;
  const bool is_on_medium = IsListed("TARNVALE_ON_A_MEDIUM", info->st_dev, info->st_ino);
  if (IsListed("TARNVALE_OF_ANOTHER", info->st_dev, info->st_ino)) {
    info->st_uid = kAnother;
    info->st_gid = kAnother;
  }
  if (is_on_medium) info->st_dev = kMedium;
  return result;
}

uid_t Owner(uid_t real) {
  const char* const faked = ::getenv("TARNVALE_AS_USER");
  return faked == nullptr ? real : static_cast<uid_t>(std::strtoul(faked, nullptr, 10));
}

}  // namespace

extern "C" {

int stat(const char* path, struct stat* info) noexcept {
  static auto* const real = Real<int(const char*, struct stat*)>("stat");
  return Faked(real(path, info), info);
}

int lstat(const char* path, struct stat* info) noexcept {
  static auto* const real = Real<int(const char*, struct stat*)>("lstat");
  return Faked(real(path, info), info);
}

int fstat(int fd, struct stat* info) noexcept {
  static auto* const real = Real<int(int, struct stat*)>("fstat");
  return Faked(real(fd, info), info);
}

int fstatat(int fd, const char* path, struct stat* info, int flags) noexcept {
  static auto* const real = Real<int(int, const char*, struct stat*, int)>("fstatat");
  return Faked(real(fd, path, info, flags), info);
}

int statx(int fd, const char* path, int flags, unsigned mask, struct statx* info) noexcept {
  static auto* const real = Real<int(int, const char*, int, unsigned, struct statx*)>("statx");
  const int result = real(fd, path, flags, mask, info);
  const auto device = ::makedev(info->stx_dev_major, info->stx_dev_minor);
  if (result == 0 && IsListed("TARNVALE_OF_ANOTHER", device, info->stx_ino)) {
    info->stx_uid = kAnother;
    info->stx_gid = kAnother;
  }
  return result;
}

int fstatvfs(int fd, struct statvfs* info) noexcept {
  static auto* const real = Real<int(int, struct statvfs*)>("fstatvfs");
  const int result = real(fd, info);
  struct stat file {};
  if (result == 0 && ::fstat(fd, &file) == 0 && file.st_dev == kMedium) {
    info->f_flag |= ST_NOSUID | ST_NODEV;
  }
  return result;
}

uid_t getuid() noexcept {
  static auto* const real = Real<uid_t()>("getuid");
  return Owner(real());
}

uid_t geteuid() noexcept {
  static auto* const real = Real<uid_t()>("geteuid");
  return Owner(real());
}

}  // extern "C"
