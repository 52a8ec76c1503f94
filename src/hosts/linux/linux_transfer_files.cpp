#include "hosts/linux/linux_transfer_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "base/failure.h"
#include "hosts/linux/descriptor.h"
#include "hosts/linux/folder_scan.h"
#include "hosts/linux/native_errors.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/paths.h"

namespace tarnvale {
namespace {

constexpr mode_t kNewFileMode = 0600;

class FileToSend final : public TransferSource {
 public:
  explicit FileToSend(Descriptor file) : file_(std::move(file)) {}

  std::size_t Read(std::span<char> bytes) override {
    std::size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t got = ::read(file_.Get(), bytes.data() + done, bytes.size() - done);
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) throw ProgramError(kDeviceIoError);
      if (got == 0) break;
      done += static_cast<std::size_t>(got);
    }
    return done;
  }

 private:
  Descriptor file_;
};

/// A file under a temporary name until it is whole, in a folder that is held.
class FileToReceive final : public TransferTarget {
 public:
  FileToReceive(Descriptor folder, Descriptor file, std::string temporary, std::string target)
      : folder_(std::move(folder)),
        file_(std::move(file)),
        temporary_(std::move(temporary)),
        target_(std::move(target)) {}
  FileToReceive(const FileToReceive&) = delete;
  FileToReceive& operator=(const FileToReceive&) = delete;
  ~FileToReceive() override {
    if (!temporary_.empty() && HasItsName()) ::unlinkat(folder_.Get(), temporary_.c_str(), 0);
  }

  void Write(std::span<const char> bytes) override {
    if (!WriteAll(file_.Get(), {bytes.data(), bytes.size()})) {
      RaiseNative(errno, Attempt::kChange);
    }
  }

  void Commit() override {
    if (!file_.Close()) RaiseNative(errno, Attempt::kChange);
    if (::renameat(folder_.Get(), temporary_.c_str(), folder_.Get(), target_.c_str()) != 0) {
      RaiseNative(errno, Attempt::kChange);
    }
    temporary_.clear();
  }

 private:
  // One that a hanging medium let go of late may have lost it to the next download.
  bool HasItsName() const {
    struct stat own {};
    struct stat there {};
    return ::fstat(file_.Get(), &own) != 0 ||
           ::fstatat(folder_.Get(), temporary_.c_str(), &there, AT_SYMLINK_NOFOLLOW) != 0 ||
           (own.st_dev == there.st_dev && own.st_ino == there.st_ino);
  }

  Descriptor folder_;
  Descriptor file_;
  std::string temporary_;  ///< empty once it was renamed
  std::string target_;
};

// Where a link comes in, it is replaced, as a copy replaces it.
void RequireReplaceable(const struct stat& info) {
  if (S_ISLNK(info.st_mode)) return;
  if (!S_ISREG(info.st_mode) || (info.st_mode & S_IWUSR) == 0) throw ProgramError(kPathFileAccess);
}

}  // namespace

std::unique_ptr<TransferSource> LinuxTransferFiles::OpenSource(const Path& file) {
  const Located located = locator_.Find(file);
  // Should the path lead to a pipe, opening doesn't wait.
  constexpr int kFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY;
  Descriptor opened = OpenByOwnLinks(AT_FDCWD, located.Native(), kFlags);
  if (!opened) RaiseNative(errno, Attempt::kChange);
  struct stat info {};
  if (::fstat(opened.Get(), &info) != 0) RaiseNative(errno, Attempt::kChange);
  if (!S_ISREG(info.st_mode)) throw ProgramError(kPathFileAccess);
  ::posix_fadvise(opened.Get(), 0, 0, POSIX_FADV_SEQUENTIAL);
  return std::make_unique<FileToSend>(std::move(opened));
}

std::unique_ptr<TransferTarget> LinuxTransferFiles::OpenTarget(const Path& file) {
  const Located located = locator_.Locate(file);
  if (located.error != 0) RaiseNative(located.error, Attempt::kChange);
  if (!located.folder_found) throw ProgramError(kPathNotFound);
  if (!CanBeNamed(located.name)) throw ProgramError(kPathFileAccess);
  if (located.found) RequireReplaceable(located.info);
  Descriptor folder = OpenNativeFolder(located.folder + "/.", true, FolderUse::kEnter);
  std::string temporary(NativeNameOf(temporaries_.Begin(located.folder)));
  Descriptor opened = CreateFresh(folder.Get(), temporary.c_str(), kNewFileMode);
  if (!opened) RaiseNative(errno, Attempt::kChange);
  // Who could read the user's file before can read it after.
  if (located.found && S_ISREG(located.info.st_mode) && located.info.st_uid == ::geteuid()) {
    ::fchmod(opened.Get(), located.info.st_mode & 0777U);
  }
  return std::make_unique<FileToReceive>(std::move(folder), std::move(opened), std::move(temporary),
                                         located.name);
}

}  // namespace tarnvale
