#include "hosts/linux/linux_profile_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>

#include "hosts/linux/file_state.h"
#include "hosts/linux/folder_scan.h"
#include "hosts/linux/name_case.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/paths.h"
#include "hosts/linux/replacement.h"

namespace tarnvale {
namespace {

// Chosen: a settings file holds passwords, so it is its owner's alone.
constexpr mode_t kFileMode = 0600;

bool ReadWhole(int file, std::string& bytes) {
  std::array<char, 65536> buffer{};
  while (true) {
    const ssize_t got = ::read(file, buffer.data(), buffer.size());
    if (got == 0) return true;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    bytes.append(buffer.data(), static_cast<std::size_t>(got));
  }
}

// Reads a plain file and its state. Should a pipe have taken its place, this
// doesn't wait for it.
bool ReadFile(const std::string& native, struct stat& state, std::string& bytes) {
  const Descriptor file(OpenByOwnLinks(AT_FDCWD, native, O_RDONLY | O_NONBLOCK | O_NOCTTY));
  return file && ::fstat(file.Get(), &state) == 0 && S_ISREG(state.st_mode) &&
         ReadWhole(file.Get(), bytes);
}

// Whether a file is the one that was read. Exchanging it changes its third time.
bool SameFile(const struct stat& a, const struct stat& b) {
  return AreOneFile(a, b) && a.st_size == b.st_size && AreOneTime(a.st_mtim, b.st_mtim);
}

class LinuxProfile : public NativeProfile {
 public:
  LinuxProfile(const Locator& locator, Temporaries& temporaries, Path file)
      : locator_(locator), temporaries_(temporaries), file_(std::move(file)) {}

  bool Find() override;
  std::string Place() override;
  bool IsAsRead() override;
  std::optional<std::string> Read() override;
  bool MayBeWritten() override;
  bool Begin() override;
  bool Keep() override;
  Outcome Replace(const std::string& bytes, bool looks_first, std::string& displaced) override;
  void End() override;

 private:
  bool WriteBeside(const std::string& bytes);
  Outcome Exchange(std::string& displaced);

  const Locator& locator_;
  Temporaries& temporaries_;
  const Path file_;
  // Where the profile lies, links followed; empty where no file could.
  std::string native_;
  // Of the file, now and when it was read; none for no file.
  std::optional<struct stat> there_;
  std::optional<struct stat> read_;
  std::optional<TemporarySlot> slot_;
  std::optional<Replacement> beside_;
};

bool LinuxProfile::Find() {
  native_.clear();
  there_.reset();
  const Located located = locator_.Locate(file_);
  if (located.error != 0) return false;
  if (!located.folder_found || !CanBeNamed(located.name)) return true;
  native_ = located.Native();
  if (!located.found) return true;
  there_ = located.info;
  if (!S_ISLNK(there_->st_mode) || GoByOwnLinks(AT_FDCWD, native_, *there_)) return true;
  there_.reset();
  return errno == ENOENT;
}

std::string LinuxProfile::Place() {
  if (there_ || native_.empty()) return native_;
  return std::string(NativeFolderOf(native_)) + "/" + FoldCase(NativeNameOf(native_));
}

bool LinuxProfile::IsAsRead() {
  return there_.has_value() == read_.has_value() && (!there_ || SameState(*there_, *read_));
}

std::optional<std::string> LinuxProfile::Read() {
  std::string bytes;
  read_ = there_;
  if (there_ && !ReadFile(native_, *read_, bytes)) return std::nullopt;
  return bytes;
}

bool LinuxProfile::MayBeWritten() {
  return !native_.empty() &&
         (!there_ || (S_ISREG(there_->st_mode) && !IsReadOnly(*there_) &&
                      ::faccessat(AT_FDCWD, native_.c_str(), W_OK, AT_EACCESS) == 0));
}

// Makes the temporary beside the file, in place of one that it had.
bool LinuxProfile::Begin() {
  if (!slot_) slot_.emplace(temporaries_);
  beside_.emplace(*slot_, NativeFolderOf(native_));
  return beside_->Create(kFileMode);
}

bool LinuxProfile::Keep() {
  return (there_->st_mode & 07777) == kFileMode ||
         ::fchmodat(AT_FDCWD, native_.c_str(), kFileMode, AT_SYMLINK_NOFOLLOW) == 0;
}

void LinuxProfile::End() {
  beside_.reset();
  slot_.reset();
  // What processes left there that were killed between write and flush.
  if (!native_.empty()) SweepFolder(std::string(NativeFolderOf(native_)), temporaries_);
}

NativeProfile::Outcome LinuxProfile::Replace(const std::string& bytes, bool looks_first,
                                             std::string& displaced) {
  if (!WriteBeside(bytes)) return Outcome::kFailed;
  if (looks_first && !(Find() && IsAsRead())) return Outcome::kAgain;
  const Outcome outcome = Exchange(displaced);
  if (outcome != Outcome::kDone) return outcome;
  beside_.reset();
  FlushFolder(AT_FDCWD, native_);
  return outcome;
}

bool LinuxProfile::WriteBeside(const std::string& bytes) {
  if (!Begin()) return false;
  const int file = beside_->Fd();
  // Ownership is kept where that is allowed.
  if (there_ && ::fchown(file, there_->st_uid, there_->st_gid) != 0) errno = 0;
  return WriteAll(file, bytes) && beside_->Close(Flush::kYes);
}

// Exchanges the two files and looks at what came out: were it another one than we read,
// somebody has written without our seeing it, and what that was is taken in with the next
// try. The named file is one whole version all the time.
NativeProfile::Outcome LinuxProfile::Exchange(std::string& displaced) {
  const char* const temporary = beside_->Path();
  const unsigned flags = there_ ? RENAME_EXCHANGE : RENAME_NOREPLACE;
  if (::renameat2(AT_FDCWD, temporary, AT_FDCWD, native_.c_str(), flags) != 0) {
    // It has come or gone meanwhile.
    if (errno == (there_ ? ENOENT : EEXIST)) return Outcome::kAgain;
    // A medium that knows only the plain way.
    if (errno != EINVAL && errno != ENOSYS) return Outcome::kFailed;
    return ::rename(temporary, native_.c_str()) == 0 ? Outcome::kDone : Outcome::kFailed;
  }
  struct stat old {};
  const bool is_another = there_ && ::lstat(temporary, &old) == 0 && !SameFile(old, *read_);
  return is_another && ReadFile(temporary, old, displaced) ? Outcome::kAgain : Outcome::kDone;
}

}  // namespace

std::unique_ptr<NativeProfile> LinuxProfileFiles::MakeNative(const Path& file) {
  return std::make_unique<LinuxProfile>(locator_, temporaries_, file);
}

}  // namespace tarnvale
