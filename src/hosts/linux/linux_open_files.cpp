#include "hosts/linux/linux_open_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

#include "base/failure.h"
#include "hosts/linux/copy_data.h"
#include "hosts/linux/folder_scan.h"
#include "hosts/linux/native_errors.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/paths.h"
#include "hosts/linux/replacement.h"
#include "hosts/linux/temporaries.h"
#include "platform/input_item.h"

namespace tarnvale {
namespace {

constexpr int kHighestNumber = 511;
// How much of a copy is gathered, in bytes: at most so much that the kernel's calls
// cost nothing, and on a slow medium so little that nobody waits for it.
constexpr std::int64_t kMostGathered = std::int64_t{4} << 20U;
constexpr std::int64_t kLeastGathered = std::int64_t{64} << 10U;
/// A gathered copy that takes longer is too long for the windows.
constexpr std::chrono::milliseconds kLongCopy{20};
// Should a path lead to a pipe or a terminal, opening doesn't wait.
constexpr int kOpenFlags = O_NONBLOCK | O_NOCTTY;
// Of files that are made.
constexpr mode_t kOwnersAlone = 0600;
constexpr mode_t kNewFile = 0666;  // less what the user's mask takes

[[noreturn]] void RaiseForOpening(int error) {
  RaiseNative(error, Attempt::kChange);
}

// Raises 75 for anything but a plain file.
void RequirePlain(const struct stat& info) {
  if (!S_ISREG(info.st_mode)) throw ProgramError(kPathFileAccess);
}

// Permissions stop nobody who is root; the read-only attribute does.
bool IsReadOnly(const struct stat& info) {
  return (info.st_mode & S_IWUSR) == 0;
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

struct stat StateOf(const Descriptor& file) {
  struct stat info {};
  if (::fstat(file.Get(), &info) != 0) throw ProgramError(kDeviceIoError);
  return info;
}

std::int64_t SizeOf(const Descriptor& file) {
  return StateOf(file).st_size;
}

bool IsSameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Up to `count` bytes from a position; fewer only at the end of the file.
std::string ReadAt(int file, std::int64_t position, std::size_t count) {
  constexpr std::size_t kStep = std::size_t{1} << 20U;
  std::string bytes;
  while (bytes.size() < count) {
    const std::size_t before = bytes.size();
    const std::size_t step = std::min(count - before, kStep);
    bytes.resize(before + step);
    const ssize_t got =
        ::pread(file, bytes.data() + before, step, position + static_cast<std::int64_t>(before));
    if (got < 0 && errno != EINTR) throw ProgramError(kDeviceIoError);
    bytes.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got == 0) break;
  }
  return bytes;
}

void WriteAt(int file, std::int64_t& position, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t done = ::pwrite(file, bytes.data(), bytes.size(), position);
    if (done < 0 && errno == EINTR) continue;
    if (done <= 0) {
      const bool full = errno == ENOSPC || errno == EDQUOT || errno == EFBIG;
      throw ProgramError(full ? kDiskFull : kDeviceIoError);
    }
    position += done;
    bytes.remove_prefix(static_cast<std::size_t>(done));
  }
}

}  // namespace

void LinuxOpenFiles::CheckFree(int number) const {
  if (number < 1 || number > kHighestNumber) throw ProgramError(kBadFileNumber);
  if (open_.count(number) != 0) throw ProgramError(kFileAlreadyOpen);
}

LinuxOpenFiles::OpenFile& LinuxOpenFiles::Find(int number) {
  const auto open = open_.find(number);
  if (open == open_.end()) throw ProgramError(kBadFileNumber);
  return open->second;
}

LinuxOpenFiles::OpenFile& LinuxOpenFiles::Require(int number) {
  OpenFile& open = Find(number);
  Settle(number);
  return open;
}

LinuxOpenFiles::OpenFile& LinuxOpenFiles::RequireReadable(int number) {
  OpenFile& open = Find(number);
  if (open.mode == Mode::kOutput) throw ProgramError(kBadFileMode);
  return open;
}

LinuxOpenFiles::OpenFile& LinuxOpenFiles::RequireWritable(int number) {
  OpenFile& open = Find(number);
  if (open.mode == Mode::kInput) throw ProgramError(kBadFileMode);
  if (!open.writable) throw ProgramError(kPathFileAccess);
  return open;
}

void LinuxOpenFiles::Hold(int number, Descriptor file, Mode mode, bool writable) {
  open_[number] = {std::move(file), mode, writable, 0, {}};
}

bool LinuxOpenFiles::HoldsOpen(const struct stat& info) const {
  return std::any_of(open_.begin(), open_.end(),
                     [&](const auto& open) { return IsSameFile(StateOf(open.second.file), info); });
}

void LinuxOpenFiles::OpenInput(int number, const Path& file) {
  CheckFree(number);
  const Located located = locator_.Find(file);
  Descriptor opened = OpenByOwnLinks(AT_FDCWD, located.Native(), O_RDONLY | kOpenFlags);
  if (!opened) RaiseForOpening(errno);
  struct stat info {};
  if (::fstat(opened.Get(), &info) != 0) RaiseForOpening(errno);
  RequirePlain(info);
  Hold(number, std::move(opened), Mode::kInput, false);
}

Located LinuxOpenFiles::LocateForWriting(const Path& file) {
  Located located = locator_.Locate(file);
  if (located.error != 0) RaiseForOpening(located.error);
  if (!located.folder_found) throw ProgramError(kPathNotFound);
  if (!CanBeNamed(located.name)) throw ProgramError(kPathFileAccess);
  return located;
}

void LinuxOpenFiles::OpenOutput(int number, const Path& file, Rights rights) {
  CheckFree(number);
  const Located located = LocateForWriting(file);
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
    if (!opened) RaiseForOpening(errno);
    // Something else may have its place by now.
    is_ours = ::fstat(opened.Get(), &info) == 0 && may_take();
  }
  if (!is_ours) {
    const Descriptor folder =
        OpenNativeFolder(std::string(NativeFolderOf(native)) + "/.", true, FolderUse::kEnter);
    opened = CreateFresh(folder.Get(), std::string(NativeNameOf(native)).c_str(), mode);
  }
  if (!opened || ::ftruncate(opened.Get(), 0) != 0) RaiseForOpening(errno);
  // An old file of the user's own loses wider rights. A medium without permissions
  // refuses; that does no harm.
  if (is_owners && ::fchmod(opened.Get(), kOwnersAlone) != 0) errno = 0;
  Hold(number, std::move(opened), Mode::kOutput, true);
}

void LinuxOpenFiles::OpenBinary(int number, const Path& file) {
  CheckFree(number);
  const Located located = LocateForWriting(file);
  const std::string native = located.Native();
  bool writable = true;
  struct stat info = located.info;
  if (located.found && (!S_ISLNK(info.st_mode) || StateByOwnLinks(AT_FDCWD, native, info))) {
    RequirePlain(info);
    writable = !IsReadOnly(info);
  }
  Descriptor opened;
  if (writable) {
    opened = OpenByOwnLinks(AT_FDCWD, native, O_RDWR | O_CREAT | kOpenFlags, kOwnersAlone);
    writable = opened || !located.found || !RefusesWriting(errno);
  }
  if (!writable) opened = OpenByOwnLinks(AT_FDCWD, native, O_RDONLY | kOpenFlags);
  if (!opened) RaiseForOpening(errno);
  Hold(number, std::move(opened), Mode::kBinary, writable);
}

void LinuxOpenFiles::OpenOwn(int number, const Path& file) {
  CheckFree(number);
  const Located located = LocateForWriting(file);
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
  if (!opened) RaiseForOpening(errno);
  Hold(number, std::move(opened), Mode::kBinary, true);
}

void LinuxOpenFiles::Write(int number, std::string_view bytes) {
  OpenFile& open = RequireWritable(number);
  Settle(number);
  WriteAt(open.file.Get(), open.position, bytes);
}

std::string LinuxOpenFiles::InputItem(int number) {
  OpenFile& open = Require(number);
  if (open.mode != Mode::kInput) throw ProgramError(kBadFileMode);
  constexpr std::size_t kChunk = 4096;
  InputItemScanner scanner;
  bool more = true;
  while (more) {
    const std::string chunk = ReadAt(open.file.Get(), open.position, kChunk);
    if (chunk.empty()) break;
    std::size_t used = 0;
    while (more && used < chunk.size()) more = scanner.Feed(chunk[used++]);
    open.position += static_cast<std::int64_t>(used);
  }
  if (!scanner.HasBegun()) throw ProgramError(kInputPastEnd);
  if (scanner.EndedInReturn() && ReadAt(open.file.Get(), open.position, 1) == "\n") {
    ++open.position;
  }
  return scanner.Item();
}

std::string LinuxOpenFiles::Read(int number, std::size_t count) {
  OpenFile& open = RequireReadable(number);
  Settle(number);
  std::string bytes = ReadAt(open.file.Get(), open.position, count);
  open.position += static_cast<std::int64_t>(bytes.size());
  return bytes;
}

std::size_t LinuxOpenFiles::ReadInto(int number, std::span<std::uint8_t> bytes) {
  OpenFile& open = RequireReadable(number);
  Settle(number);
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t got =
        ::pread(open.file.Get(), bytes.data() + done, bytes.size() - done, open.position);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw ProgramError(kDeviceIoError);
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
    open.position += got;
  }
  return done;
}

std::size_t LinuxOpenFiles::Copy(int from, int to, std::span<std::uint8_t> buffer) {
  OpenFile& source = RequireReadable(from);
  OpenFile& target = RequireWritable(to);
  const bool goes_on =
      target.gathered && target.gathered->GoesOn(from, source.position, target.position);
  if (!goes_on && IsSameFile(StateOf(source.file), StateOf(target.file))) {
    return OpenFiles::Copy(from, to, buffer);
  }
  // What the source was still to be given, and what came from elsewhere.
  if (source.gathered) Settle(from);
  if (target.gathered && !goes_on) Settle(to);
  if (!target.gathered) {
    target.gathered = {.from = from,
                       .from_position = source.position,
                       .to_position = target.position,
                       .from_end = SizeOf(source.file)};
  }
  const auto wanted = static_cast<std::int64_t>(buffer.size());
  std::int64_t left = target.gathered->from_end - source.position;
  if (left < wanted) {
    // It may have grown since.
    target.gathered->from_end = SizeOf(source.file);
    left = target.gathered->from_end - source.position;
  }
  const std::int64_t count = std::clamp<std::int64_t>(left, 0, wanted);
  target.gathered->count += count;
  source.position += count;
  target.position += count;
  if (target.gathered->count >= most_gathered_ || count < wanted) CopyGathered(target);
  return static_cast<std::size_t>(count);
}

void LinuxOpenFiles::Settle(int number) {
  PassedOver pass;
  for (auto& [to, open] : open_) {
    if (!open.gathered || (to != number && open.gathered->from != number)) continue;
    pass.Step([&target = open, this] { CopyGathered(target); });
  }
  if (pass.StandingError()) throw ProgramError(*pass.StandingError());
}

void LinuxOpenFiles::CopyGathered(OpenFile& to) {
  const GatheredCopy copy = *std::exchange(to.gathered, std::nullopt);
  const int source = Find(copy.from).file.Get();
  const int target = to.file.Get();
  if (::lseek(source, copy.from_position, SEEK_SET) < 0 ||
      ::lseek(target, copy.to_position, SEEK_SET) < 0) {
    throw ProgramError(kDeviceIoError);
  }
  const auto began = std::chrono::steady_clock::now();
  const bool is_whole = CopyRange(source, target, copy.count) == copy.count;
  FitToMedium(std::chrono::steady_clock::now() - began);
  if (!is_whole) throw ProgramError(kInputPastEnd);
}

void LinuxOpenFiles::FitToMedium(std::chrono::nanoseconds took) {
  if (took > kLongCopy) {
    most_gathered_ = std::max(most_gathered_ / 4, kLeastGathered);
  } else if (took < kLongCopy / 4) {
    most_gathered_ = std::min(most_gathered_ * 2, kMostGathered);
  }
}

std::int64_t LinuxOpenFiles::Length(int number) {
  return SizeOf(Require(number).file);
}

void LinuxOpenFiles::Seek(int number, std::int64_t position) {
  OpenFile& open = Require(number);
  if (position < 0) throw ProgramError(kInvalidCall);
  open.position = position;
}

void LinuxOpenFiles::Close(int number) {
  if (!IsOpen(number)) return;
  PassedOver pass;
  pass.Step([&] { Settle(number); });
  const auto open = open_.find(number);
  Descriptor file = std::move(open->second.file);
  open_.erase(open);
  pass.Step([&] {
    if (file.Close()) return;
    throw ProgramError(errno == ENOSPC || errno == EDQUOT ? kDiskFull : kDeviceIoError);
  });
  if (pass.StandingError()) throw ProgramError(*pass.StandingError());
}

void LinuxOpenFiles::CloseAll() {
  PassedOver pass;
  for (const auto& [number, open] : open_) pass.Step([&, n = number] { Settle(n); });
  open_.clear();
}

}  // namespace tarnvale
