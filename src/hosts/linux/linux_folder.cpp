#include "hosts/linux/linux_folder.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

#include "base/failure.h"
#include "hosts/linux/file_state.h"
#include "hosts/linux/folder_scan.h"
#include "hosts/linux/listing.h"
#include "hosts/linux/native_errors.h"
#include "hosts/linux/paths.h"

namespace tarnvale {

void RequireName(const std::string& name) {
  if (name.empty() || name == "." || name == ".." || !CanBeNamed(name) ||
      name.find_first_of(std::string_view("/\0", 2)) != std::string::npos) {
    throw ProgramError(kPathFileAccess);
  }
}

FolderContents LinuxFolder::Contents() {
  listed_ = ReadContents(OpenInnerFolder(Fd(), {}), temporaries_);
  return *listed_;
}

std::optional<std::size_t> LinuxFolder::FoundBy(const std::string& name,
                                                const ListedNames& listed) {
  return tarnvale::FoundBy(Fd(), name, listed);
}

bool LinuxFolder::HasExactly(const std::string& name, const struct stat& there) {
  // What no listing contains, a device, is in no copy's place either.
  if (!S_ISREG(there.st_mode) && !S_ISLNK(there.st_mode) && !S_ISDIR(there.st_mode)) return true;
  if (made_.contains(name)) return true;
  if (!listed_) listed_ = ReadNames(OpenInnerFolder(Fd(), {}), temporaries_);
  return Holds(*listed_, name);
}

std::optional<FolderEntry> LinuxFolder::File(const std::string& name) {
  struct stat info {};
  if (::fstatat(Fd(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  if (!S_ISREG(info.st_mode) && !S_ISLNK(info.st_mode)) return std::nullopt;
  return EntryOf(name, info);
}

std::unique_ptr<HeldFolder> LinuxFolder::Inner(const std::string& names) {
  std::string native = names;
  std::replace(native.begin(), native.end(), '\\', '/');
  Descriptor inner = OpenInnerFolder(Fd(), native);
  const std::string below = native.empty() ? native : "/" + native;
  return std::make_unique<LinuxFolder>(std::move(inner), native_ + below, temporaries_);
}

void LinuxFolder::MakeFolder(const std::string& name) {
  RequireName(name);
  if (::mkdirat(Fd(), name.c_str(), 0777) != 0) RaiseForMaking(name, errno);
  NoteMade(name);
}

void LinuxFolder::MakeFile(const std::string& name, Rights rights) {
  RequireName(name);
  const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  const mode_t mode = rights == Rights::kOwner ? 0600 : 0666;
  const Descriptor made(::openat(Fd(), name.c_str(), flags, mode));
  if (!made) RaiseForMaking(name, errno);
  NoteMade(name);
}

bool LinuxFolder::Is(const HeldFolder& other) {
  struct stat one {};
  struct stat two {};
  return ::fstat(Fd(), &one) == 0 &&
         ::fstat(static_cast<const LinuxFolder&>(other).Fd(), &two) == 0 && AreOneFile(one, two);
}

void LinuxFolder::RaiseForMaking(const std::string& name, int error) {
  struct stat there {};
  if (error == EEXIST && ::fstatat(Fd(), name.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0 &&
      !HasExactly(name, there)) {
    throw ProgramError(kFileAlreadyExists);
  }
  if (error == EEXIST) throw ProgramError(kPathFileAccess);
  if (error == ENOENT) throw ProgramError(kPathNotFound);
  RaiseNative(error, Attempt::kChange);
}

}  // namespace tarnvale
