#include "hosts/linux/linux_open_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <utility>

#include "base/failure.h"
#include "hosts/linux/copy_data.h"
#include "hosts/linux/file_state.h"
#include "hosts/linux/folder_scan.h"
#include "hosts/linux/native_errors.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/paths.h"
#include "hosts/linux/read_data.h"
#include "hosts/linux/replacement.h"

namespace tarnvale {
namespace {

// How much of a copy is gathered, in bytes: at most so much that the kernel's calls
// cost nothing, and on a slow medium so little that nobody waits for it.
constexpr std::int64_t kMostGathered = std::int64_t{8} << 20U;
constexpr std::int64_t kLeastGathered = std::int64_t{64} << 10U;
/// A gathered copy that takes longer is too long for the windows.
constexpr std::chrono::milliseconds kLongCopy{20};
// Should a path lead to a pipe or a terminal, opening doesn't wait.
constexpr int kOpenFlags = O_NONBLOCK | O_NOCTTY;
// Of files that are made.
constexpr mode_t kOwnersAlone = 0600;
constexpr mode_t kNewFile = 0666;  // less what the user's mask takes

// Raises 75 for anything but a plain file.
void RequirePlain(const struct stat& info) {
  if (!S_ISREG(info.st_mode)) throw ProgramError(kPathFileAccess);
}

bool IsOfThisUser(const struct stat& info) {
  return info.st_uid == ::geteuid();
}

// Whether what is written to a file reaches this user alone: nobody else has it, under
// this or another name.
bool IsNobodyElses(const struct stat& info) {
  return S_ISREG(info.st_mode) && IsOfThisUser(info) && info.st_nlink == 1;
}

// Whether a file that can't be opened for writing may still be read: no right, a
// medium that can't be written to, a program that is running.
bool RefusesWriting(int error) {
  return error == EACCES || error == EPERM || error == EROFS || error == ETXTBSY;
}

class LinuxFile final : public NativeFile {
 public:
  explicit LinuxFile(Descriptor file) : file_(std::move(file)) {}

  std::size_t ReadAt(std::int64_t position, std::span<std::uint8_t> bytes) override {
    return ReadData(file_.Get(), position, bytes);
  }

  void WriteAt(std::int64_t position, std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t done = ::pwrite(file_.Get(), bytes.data(), bytes.size(), position);
      if (done < 0 && errno == EINTR) continue;
      if (done <= 0) RaiseForWriting();
      position += done;
      bytes.remove_prefix(static_cast<std::size_t>(done));
    }
  }

  std::int64_t Length() override { return Info().st_size; }

  void Close() override {
    if (!file_.Close()) RaiseForWriting();
  }

  int Fd() const { return file_.Get(); }
  struct stat Info() const {
    struct stat info {};
    if (::fstat(file_.Get(), &info) != 0) throw ProgramError(kDeviceIoError);
    return info;
  }
  bool Is(const struct stat& other) const { return AreOneFile(Info(), other); }

 private:
  [[noreturn]] static void RaiseForWriting() {
    const bool full = errno == ENOSPC || errno == EDQUOT || errno == EFBIG;
    throw ProgramError(full ? kDiskFull : kDeviceIoError);
  }

  Descriptor file_;
};

LinuxFile& Own(NativeFile& file) {
  return static_cast<LinuxFile&>(file);
}

}  // namespace

bool LinuxOpenFiles::HoldsOpen(const struct stat& info) const {
  return Holds([&](NativeFile& file) { return Own(file).Is(info); });
}

OpenFileTable::Opened LinuxOpenFiles::OpenNative(Use use, const Path& file, Rights rights) {
  bool is_writable = use != Use::kInput;
  Descriptor opened;
  switch (use) {
    case Use::kInput:
      opened = ForInput(file);
      break;
    case Use::kOutput:
      opened = ForOutput(file, rights);
      break;
    case Use::kBinary:
      opened = ForBoth(file, is_writable);
      break;
    case Use::kOwn:
      opened = ForOwnUse(file);
      break;
  }
  return {std::make_unique<LinuxFile>(std::move(opened)), is_writable};
}

Descriptor LinuxOpenFiles::ForInput(const Path& file) {
  const Located located = locator_.Find(file);
  Descriptor opened = OpenByOwnLinks(AT_FDCWD, located.Native(), O_RDONLY | kOpenFlags);
  if (!opened) RaiseNative(errno, Attempt::kChange);
  struct stat info {};
  if (::fstat(opened.Get(), &info) != 0) RaiseNative(errno, Attempt::kChange);
  RequirePlain(info);
  return opened;
}

Descriptor LinuxOpenFiles::ForOutput(const Path& file, Rights rights) {
  const Located located = Locator::RequireTarget(locator_.Locate(file));
  std::string native = located.Native();
  struct stat info {};
  // A link that leads nowhere is found, and what it names is made.
  const bool is_there = located.found && GoByOwnLinks(AT_FDCWD, native, info);
  if (is_there) {
    RequirePlain(info);
    if (IsReadOnly(info)) throw ProgramError(kPathFileAccess);
  }
  const bool is_owners = rights == Rights::kOwner;
  const mode_t mode = is_owners ? kOwnersAlone : kNewFile;
  // What is the owner's alone goes into no file that has a second name elsewhere.
  const auto may_take = [&] { return is_owners ? IsNobodyElses(info) : IsOfThisUser(info); };
  bool is_ours = !is_there || may_take();
  Descriptor opened;
  if (is_ours) {
    opened = OpenByOwnLinks(AT_FDCWD, native, O_RDWR | O_CREAT | kOpenFlags, mode);
    if (!opened) RaiseNative(errno, Attempt::kChange);
    // Something else may have its place by now.
    is_ours = ::fstat(opened.Get(), &info) == 0 && may_take();
  }
  if (!is_ours) {
    const Descriptor folder =
        OpenNativeFolder(std::string(NativeFolderOf(native)) + "/.", true, FolderUse::kEnter);
    opened = CreateFresh(folder.Get(), std::string(NativeNameOf(native)).c_str(), mode);
  }
  if (!opened || ::ftruncate(opened.Get(), 0) != 0) RaiseNative(errno, Attempt::kChange);
  // An old file of the user's own loses wider rights. A medium without permissions
  // refuses; that does no harm.
  if (is_owners && ::fchmod(opened.Get(), kOwnersAlone) != 0) errno = 0;
  return opened;
}

Descriptor LinuxOpenFiles::ForBoth(const Path& file, bool& is_writable) {
  const Located located = Locator::RequireTarget(locator_.Locate(file));
  const std::string native = located.Native();
  struct stat info = located.info;
  if (located.found && (!S_ISLNK(info.st_mode) || StateByOwnLinks(AT_FDCWD, native, info))) {
    RequirePlain(info);
    is_writable = !IsReadOnly(info);
  }
  Descriptor opened;
  if (is_writable) {
    opened = OpenByOwnLinks(AT_FDCWD, native, O_RDWR | O_CREAT | kOpenFlags, kOwnersAlone);
    is_writable = opened || !located.found || !RefusesWriting(errno);
  }
  if (!is_writable) opened = OpenByOwnLinks(AT_FDCWD, native, O_RDONLY | kOpenFlags);
  if (!opened) RaiseNative(errno, Attempt::kChange);
  return opened;
}

Descriptor LinuxOpenFiles::ForOwnUse(const Path& file) {
  const Located located = Locator::RequireTarget(locator_.Locate(file));
  const Descriptor folder = OpenNativeFolder(located.folder + "/.", true, FolderUse::kEnter);
  const char* const name = located.name.c_str();
  constexpr int kFlags = O_RDWR | O_NOFOLLOW | O_CLOEXEC | kOpenFlags;
  Descriptor opened;
  struct stat info {};
  if (::fstatat(folder.Get(), name, &info, AT_SYMLINK_NOFOLLOW) == 0 && IsNobodyElses(info)) {
    if (IsReadOnly(info)) throw ProgramError(kPathFileAccess);
    opened = Descriptor(::openat(folder.Get(), name, kFlags));
    // Something else may have its place by now.
    if (!opened || ::fstat(opened.Get(), &info) != 0 || !IsNobodyElses(info)) opened.Close();
    // A medium without permissions refuses; that does no harm.
    if (opened) ::fchmod(opened.Get(), kOwnersAlone);
  }
  if (!opened) opened = CreateFresh(folder.Get(), name, kOwnersAlone);
  if (!opened) RaiseNative(errno, Attempt::kChange);
  return opened;
}

std::size_t LinuxOpenFiles::Copy(int from, int to, std::span<std::uint8_t> buffer) {
  OpenFile& source = RequireReadable(from);
  OpenFile& target = RequireWritable(to);
  const GatheredCopy fresh{from, source.position, target.position};
  const auto begun = gathered_.find(to);
  const bool goes_on = begun != gathered_.end() && begun->second.GoesOn(fresh);
  if (!goes_on && Own(*source.opened.file).Is(Own(*target.opened.file).Info())) {
    return OpenFiles::Copy(from, to, buffer);
  }
  // What the source was still to be given, and what came from elsewhere.
  if (gathered_.contains(from)) Settle(from);
  if (!goes_on && gathered_.contains(to)) Settle(to);
  GatheredCopy& copy = gathered_.try_emplace(to, fresh).first->second;
  const auto wanted = static_cast<std::int64_t>(buffer.size());
  // Not at each small step: a file that has become shorter since is found out by the copy itself.
  if (copy.from_length - source.position < wanted) copy.from_length = source.opened.file->Length();
  const std::int64_t left = copy.from_length - source.position;
  const std::int64_t count = std::clamp<std::int64_t>(left, 0, wanted);
  copy.count += count;
  source.position += count;
  target.position += count;
  if (count < wanted) {
    CopyGathered(to);
  } else if (copy.count >= most_gathered_) {
    // A piece that ends within a page of the target takes half as long again.
    CopyGathered(to, target.position % kLeastGathered);
  }
  return static_cast<std::size_t>(count);
}

void LinuxOpenFiles::Settle(int number) {
  PassedOver pass;
  for (auto next = gathered_.begin(); next != gathered_.end();) {
    const auto& [to, copy] = *next++;
    if (to != number && copy.from != number) continue;
    pass.Step([&, target = to] { CopyGathered(target); });
  }
  if (pass.StandingError()) throw ProgramError(*pass.StandingError());
}

void LinuxOpenFiles::CopyGathered(int to, std::int64_t rest) {
  GatheredCopy copy = gathered_.extract(to).mapped();
  copy.count -= rest;
  const int source = Own(*Find(copy.from).opened.file).Fd();
  const int target = Own(*Find(to).opened.file).Fd();
  if (::lseek(source, copy.from_position, SEEK_SET) < 0 ||
      ::lseek(target, copy.to_position, SEEK_SET) < 0) {
    throw ProgramError(kDeviceIoError);
  }
  const auto began = std::chrono::steady_clock::now();
  const bool is_whole = CopyRange(source, target, copy.count) == copy.count;
  FitToMedium(std::chrono::steady_clock::now() - began);
  if (!is_whole) throw ProgramError(kInputPastEnd);
  if (rest == 0) return;
  copy.from_position += copy.count;
  copy.to_position += copy.count;
  copy.count = rest;
  gathered_.emplace(to, copy);
}

void LinuxOpenFiles::FitToMedium(std::chrono::nanoseconds took) {
  if (took > kLongCopy) {
    most_gathered_ = std::max(most_gathered_ / 4, kLeastGathered);
  } else if (took < kLongCopy / 4) {
    most_gathered_ = std::min(most_gathered_ * 2, kMostGathered);
  }
}

}  // namespace tarnvale
