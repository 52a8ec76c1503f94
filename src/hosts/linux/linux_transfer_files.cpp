#include "hosts/linux/linux_transfer_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "base/failure.h"
#include "hosts/linux/descriptor.h"
#include "hosts/linux/file_state.h"
#include "hosts/linux/folder_scan.h"
#include "hosts/linux/native_errors.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/paths.h"
#include "hosts/linux/replacement.h"

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

/// In a folder that is held.
class FileToReceive final : public TransferTarget {
 public:
  FileToReceive(Temporaries& temporaries, const Located& target)
      : folder_(OpenNativeFolder(target.folder + "/.", true, FolderUse::kEnter)),
        slot_(temporaries),
        file_(slot_, target.folder, folder_.Get()),
        target_(target.name) {
    if (!file_.Create(kNewFileMode)) RaiseNative(errno, Attempt::kChange);
    // Whoever could read the user's file before can read it after.
    const struct stat& old = target.info;
    if (target.found && S_ISREG(old.st_mode) && old.st_uid == ::geteuid()) {
      ::fchmod(file_.Fd(), old.st_mode & 0777U);
    }
  }

  void Write(std::span<const char> bytes) override {
    if (!WriteAll(file_.Fd(), {bytes.data(), bytes.size()})) RaiseNative(errno, Attempt::kChange);
  }

  void Commit() override { file_.Commit(target_); }

 private:
  Descriptor folder_;
  TemporarySlot slot_;
  Replacement file_;
  std::string target_;
};

// Where a link comes in, it is replaced, as a copy replaces it.
void RequireReplaceable(const struct stat& info) {
  if (S_ISLNK(info.st_mode)) return;
  if (!S_ISREG(info.st_mode) || IsReadOnly(info)) throw ProgramError(kPathFileAccess);
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
  const Located located = Locator::RequireTarget(locator_.Locate(file));
  if (located.found) RequireReplaceable(located.info);
  return std::make_unique<FileToReceive>(temporaries_, located);
}

}  // namespace tarnvale
