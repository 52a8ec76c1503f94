#include "hosts/linux/replacement.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>

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
    : folder_fd_(folder_fd), path_(slot.Begin(folder)) {
  if (folder_fd_ != AT_FDCWD) path_.erase(0, folder.size() + 1);
}

Replacement::~Replacement() {
  if (!is_in_place_) ::unlinkat(folder_fd_, Path(), 0);
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
  if (!Close(flush) || ::renameat(folder_fd_, Path(), folder_fd_, target.c_str()) != 0) {
    RaiseNative(errno, Attempt::kChange);
  }
  is_in_place_ = true;
  if (flush == Flush::kNo) return;
  // Some media can't flush folders; the file itself is safe all the same.
  const std::string here = path_.substr(0, path_.rfind('/') + 1) + ".";
  const Descriptor folder(::openat(folder_fd_, here.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder) ::fsync(folder.Get());
}

}  // namespace tarnvale
