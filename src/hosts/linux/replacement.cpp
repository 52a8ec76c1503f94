#include "hosts/linux/replacement.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "base/failure.h"
#include "hosts/linux/file_state.h"
#include "hosts/linux/native_errors.h"

namespace tarnvale {

Descriptor CreateFresh(int folder_fd, const char* name, mode_t mode) {
  const int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  Descriptor file(::openat(folder_fd, name, flags, mode));
  if (!file && errno == EEXIST && ::unlinkat(folder_fd, name, 0) == 0) {
    file = Descriptor(::openat(folder_fd, name, flags, mode));
  }
  return file;
}

Replacement::Replacement(TemporarySlot& slot, std::string_view folder, int folder_fd)
    : slot_(slot), folder_fd_(folder_fd), path_(slot.Begin(folder)) {
  if (folder_fd_ != AT_FDCWD) path_.erase(0, folder.size() + 1);
}

Replacement::~Replacement() {
  if (!is_in_place_ && ::unlinkat(folder_fd_, Path(), 0) != 0 && errno != ENOENT) {
    slot_.LeaveBehind();
  }
}

bool Replacement::Create(mode_t mode) {
  file_ = CreateFresh(folder_fd_, Path(), mode);
  return static_cast<bool>(file_);
}

bool Replacement::CreateLink(const char* leads_to) {
  if (::symlinkat(leads_to, folder_fd_, Path()) == 0) return true;
  return errno == EEXIST && ::unlinkat(folder_fd_, Path(), 0) == 0 &&
         ::symlinkat(leads_to, folder_fd_, Path()) == 0;
}

bool Replacement::Close(Flush flush) {
  return (flush == Flush::kNo || ::fsync(Fd()) == 0) && file_.Close();
}

void Replacement::Commit(const std::string& target, Flush flush) {
  if (!Close(flush)) RaiseNative(errno, Attempt::kChange);
  Rename(target, 0);
  if (flush == Flush::kYes) FlushFolder(folder_fd_, path_);
}

void Replacement::CommitNew(const std::string& target) {
  if (!Close(Flush::kNo)) RaiseNative(errno, Attempt::kChange);
  if (Rename(target, RENAME_NOREPLACE)) return;
  struct stat there {};
  if (::fstatat(folder_fd_, target.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0) {
    throw ProgramError(kFileAlreadyExists);
  }
  Rename(target, 0);
}

// Looks before it exchanges the two, so that hardly ever the wrong one comes out: until that
// is back, it would go with the process.
void Replacement::CommitOver(const std::string& target, const struct stat& seen) {
  if (!Close(Flush::kNo)) RaiseNative(errno, Attempt::kChange);
  RequireAsSeen(target.c_str(), seen);
  if (!Rename(target, RENAME_EXCHANGE)) {
    Rename(target, 0);
    return;
  }
  try {
    RequireAsSeen(Path(), seen);
  } catch (const ProgramError&) {
    is_in_place_ = true;  // what is here now isn't ours to delete
    Rename(target, RENAME_EXCHANGE);
    throw;
  }
}

// False where the medium knows only the plain way.
bool Replacement::Rename(const std::string& target, unsigned flags) {
  if (::renameat2(folder_fd_, Path(), folder_fd_, target.c_str(), flags) == 0) {
    is_in_place_ = flags != RENAME_EXCHANGE;
    return true;
  }
  if (flags != 0 && (errno == EINVAL || errno == ENOSYS)) return false;
  if (errno == EEXIST || (flags == RENAME_EXCHANGE && errno == ENOENT)) {
    throw ProgramError(kFileAlreadyExists);
  }
  RaiseNative(errno, Attempt::kChange);
}

// By kind, size and time: some media number their files anew when memory runs short.
void Replacement::RequireAsSeen(const char* name, const struct stat& seen) const {
  struct stat now {};
  if (::fstatat(folder_fd_, name, &now, AT_SYMLINK_NOFOLLOW) != 0 ||
      (now.st_mode & S_IFMT) != (seen.st_mode & S_IFMT) || now.st_size != seen.st_size ||
      !AreOneTime(now.st_mtim, seen.st_mtim)) {
    throw ProgramError(kFileAlreadyExists);
  }
}

void FlushFolder(int folder_fd, const std::string& path) {
  const std::string here = path.substr(0, path.rfind('/') + 1) + ".";
  const Descriptor folder(::openat(folder_fd, here.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder) ::fsync(folder.Get());
}

}  // namespace tarnvale
