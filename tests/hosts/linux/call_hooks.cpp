// The hooked calls stand before the system's own.
#include "tests/hosts/linux/call_hooks.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace {

template <class Hook>
bool Succeeds() {
  const int error = Hook::present == nullptr ? 0 : Hook::present->Call();
  if (error != 0) errno = error;
  return error == 0;
}

}  // namespace

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
