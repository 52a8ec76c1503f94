// The hooked calls stand before the system's own.
#include "tests/hosts/linux/call_hooks.h"

#include <dirent.h>
#include <dlfcn.h>
#include <linux/msdos_fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

namespace {

template <class Hook>
bool Succeeds() {
  const int error = Hook::present == nullptr ? 0 : Hook::present->Call();
  if (error != 0) errno = error;
  return error == 0;
}

bool HasExtendedAttributes() {
  if (tarnvale::testing::FatMedium::present == nullptr) return true;
  errno = EOPNOTSUPP;
  return false;
}

}  // namespace

int tarnvale::testing::FatMedium::Control(ino_t file, bool set, std::uint32_t& byte) {
  if (set && is_read_only) {
    errno = EROFS;
    return -1;
  }
  std::uint32_t& kept = bytes.try_emplace(file, ATTR_ARCH).first->second;
  (set ? kept : byte) = set ? byte : kept;
  return 0;
}

extern "C" int ioctl(int file, unsigned long request, ...) noexcept {
  std::va_list rest;
  va_start(rest, request);
  void* const argument = va_arg(rest, void*);
  va_end(rest);
  struct stat info {};
  const bool sets = request == FAT_IOCTL_SET_ATTRIBUTES;
  if (tarnvale::testing::FatMedium::present != nullptr &&
      (sets || request == FAT_IOCTL_GET_ATTRIBUTES) && ::fstat(file, &info) == 0) {
    return tarnvale::testing::FatMedium::present->Control(info.st_ino, sets,
                                                          *static_cast<std::uint32_t*>(argument));
  }
  return static_cast<int>(::syscall(SYS_ioctl, file, request, argument));
}

extern "C" ssize_t getxattr(const char* path, const char* name, void* value,
                            std::size_t size) noexcept {
  return HasExtendedAttributes() ? ::syscall(SYS_getxattr, path, name, value, size) : -1;
}

extern "C" int setxattr(const char* path, const char* name, const void* value, std::size_t size,
                        int flags) noexcept {
  if (!HasExtendedAttributes()) return -1;
  return static_cast<int>(::syscall(SYS_setxattr, path, name, value, size, flags));
}

extern "C" int removexattr(const char* path, const char* name) noexcept {
  if (!HasExtendedAttributes()) return -1;
  return static_cast<int>(::syscall(SYS_removexattr, path, name));
}

extern "C" dirent* readdir(DIR* folder) {
  static const auto real = reinterpret_cast<dirent* (*)(DIR*)>(::dlsym(RTLD_NEXT, "readdir"));
  dirent* const entry = real(folder);
  if (entry != nullptr && tarnvale::testing::SilentMedium::is_present) entry->d_type = DT_UNKNOWN;
  return entry;
}

extern "C" ssize_t pread(int file, void* bytes, std::size_t count, off_t position) {
  if (!Succeeds<tarnvale::testing::ReadHook>()) return -1;
  return ::syscall(SYS_pread64, file, bytes, count, position);
}

extern "C" int renameat2(int from_folder, const char* from, int to_folder, const char* to,
                         unsigned flags) noexcept {
  if (flags != 0 && !Succeeds<tarnvale::testing::RenameHook>()) return -1;
  return static_cast<int>(::syscall(SYS_renameat2, from_folder, from, to_folder, to, flags));
}

extern "C" int symlinkat(const char* leads_to, int folder, const char* name) noexcept {
  if (!Succeeds<tarnvale::testing::LinkHook>()) return -1;
  return static_cast<int>(::syscall(SYS_symlinkat, leads_to, folder, name));
}

extern "C" int fstatat(int folder, const char* name, struct stat* info, int flags) noexcept {
  if (!Succeeds<tarnvale::testing::StateHook>()) return -1;
  return static_cast<int>(::syscall(SYS_newfstatat, folder, name, info, flags));
}

extern "C" int unlinkat(int folder, const char* name, int flags) noexcept {
  if (!Succeeds<tarnvale::testing::RemoveHook>()) return -1;
  return static_cast<int>(::syscall(SYS_unlinkat, folder, name, flags));
}

extern "C" int syncfs(int file) noexcept {
  if (!Succeeds<tarnvale::testing::SyncHook>()) return -1;
  return static_cast<int>(::syscall(SYS_syncfs, file));
}

extern "C" int futimens(int file, const timespec times[2]) noexcept {
  if (!Succeeds<tarnvale::testing::TimeHook>()) return -1;
  return static_cast<int>(::syscall(SYS_utimensat, file, nullptr, times, 0));
}
