#include "hosts/linux/linux_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string_view>

#include "base/failure.h"
#include "hosts/linux/file_state.h"
#include "hosts/linux/linux_folder.h"
#include "hosts/linux/listing.h"
#include "hosts/linux/medium_flush.h"
#include "hosts/linux/name_case.h"
#include "hosts/linux/native_errors.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/own_program.h"
#include "hosts/linux/unflushed_copies.h"
#include "platform/path_text.h"

namespace tarnvale {
namespace {

// More folders than this are simply looked through once more.
constexpr std::size_t kMostSwept = 65536;

bool IsSystem(const struct stat& info) {
  return !S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode) && !S_ISLNK(info.st_mode);
}

bool IsHidden(const Located& located) {
  return located.name.size() > 1 && located.name.front() == '.';
}

bool IsFolder(const Located& located) {
  if (!located.found) return false;
  struct stat info {};
  return S_ISDIR(located.info.st_mode) ||
         (S_ISLNK(located.info.st_mode) && ::stat(located.Native().c_str(), &info) == 0 &&
          S_ISDIR(info.st_mode));
}

// Sets the mode of the very file that `info` describes: another one may have come into
// its place meanwhile, or into a folder's on the way. Raises 75 then, and for a link of
// somebody else.
void SetMode(const Located& located, const struct stat& info, mode_t mode) {
  std::string native = located.Native();
  struct stat end {};
  if (!GoByOwnLinks(AT_FDCWD, native, end)) RaiseNative(errno, Attempt::kQuery);
  const Descriptor file(::open(native.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  if (!file || ::fstat(file.Get(), &end) != 0) RaiseNative(errno, Attempt::kQuery);
  if (!AreOneFile(end, info)) throw ProgramError(kPathFileAccess);
  const std::string held = "/proc/self/fd/" + std::to_string(file.Get());
  if (::chmod(held.c_str(), mode) != 0) RaiseNative(errno, Attempt::kQuery);
}

void RequireCopyable(const struct stat& info) {
  if (S_ISDIR(info.st_mode)) throw ProgramError(kFileNotFound);
  if (IsSystem(info)) throw ProgramError(kPermissionDenied);
}

// Chosen: what a sync brings to the computer is on the medium before it has its name. Half
// a file with the time of a whole one would win over that in the next sync.
Flush FlushOf(Rights rights) {
  return rights == Rights::kNewFile ? Flush::kYes : Flush::kNo;
}

// Chosen: settings are, too, as nobody should be left without any. A large file takes its
// time, in which the window would be still.
Flush FlushOf(Rights rights, std::int64_t size_bytes) {
  constexpr std::int64_t kMostFlushed = std::int64_t{1} << 20U;
  return rights == Rights::kOwner && size_bytes <= kMostFlushed ? Flush::kYes : Flush::kNo;
}

// Where a copy to an entry of a held folder goes; none when it would go onto itself.
std::optional<CopyTarget> TargetOf(const HeldEntry& target, const struct stat& source,
                                   bool only_as_seen) {
  LinuxFolder& folder = LinuxFolder::Of(target);
  RequireName(target.name);
  struct stat there {};
  const bool exists = IsThere({folder.Fd(), target.name.c_str()}, there);
  if (exists && !folder.HasExactly(target.name, there)) throw ProgramError(kFileAlreadyExists);
  if (exists && !MayReplace(source, there)) return std::nullopt;
  return CopyTarget{
      {folder.Fd(), target.name.c_str()}, folder.Native(), !exists, only_as_seen, there};
}

// Makes one folder. Raises 75 when something is there already.
void MakeNative(const Located& located) {
  if (Locator::RequireTarget(located).found) throw ProgramError(kPathFileAccess);
  if (::mkdir(located.Native().c_str(), 0777) == 0) return;
  if (errno == EEXIST) throw ProgramError(kPathFileAccess);
  if (errno == ENOENT) throw ProgramError(kPathNotFound);
  RaiseNative(errno, Attempt::kChange);
}

}  // namespace

LinuxFiles::LinuxFiles(Locator& locator, Temporaries& temporaries, const std::string& state_folder)
    : locator_(locator),
      temporaries_(temporaries),
      copy_(temporaries),
      archive_(state_folder, temporaries) {}

Path LinuxFiles::ProgramFolder() {
  return locator_.Drive().FromNative(OwnProgramFolder());
}

// As Locator::Find, with `info` that of the file behind a link.
Located LinuxFiles::FindFollowed(const Path& path) {
  Located located = locator_.Find(path);
  if (S_ISLNK(located.info.st_mode) && !StateByOwnLinks(AT_FDCWD, located.Native(), located.info)) {
    if (errno == ENOTDIR || errno == ELOOP) errno = ENOENT;
    RaiseNative(errno, Attempt::kQuery);
  }
  return located;
}

std::int64_t LinuxFiles::Length(const Path& file) {
  const Located located = FindFollowed(file);
  if (S_ISDIR(located.info.st_mode)) throw ProgramError(kFileNotFound);
  if (!S_ISREG(located.info.st_mode)) throw ProgramError(kPathFileAccess);
  return located.info.st_size;
}

int LinuxFiles::Attributes(const Path& path) {
  const Located located = FindFollowed(path);
  const struct stat& info = located.info;
  int value = 0;
  if (IsReadOnly(info)) value |= attribute::kReadOnly;
  if (IsHidden(located)) value |= attribute::kHidden;
  if (IsSystem(info)) value |= attribute::kSystem;
  if (S_ISDIR(info.st_mode)) value |= attribute::kDirectory;
  if (S_ISREG(info.st_mode) && archive_.IsSet(located.Native(), info)) value |= attribute::kArchive;
  return value;
}

void LinuxFiles::SetAttributes(const Path& file, int value) {
  constexpr int kAll =
      attribute::kReadOnly | attribute::kHidden | attribute::kSystem | attribute::kArchive;
  if (value < 0 || (value & ~kAll) != 0) throw ProgramError(kInvalidCall);
  const Located located = FindFollowed(file);
  const struct stat& info = located.info;
  if (S_ISDIR(info.st_mode)) throw ProgramError(kPathFileAccess);
  const bool hidden = (value & attribute::kHidden) != 0;
  const bool system = (value & attribute::kSystem) != 0;
  const bool archive = (value & attribute::kArchive) != 0;
  if (hidden != IsHidden(located) || system != IsSystem(info) || (system && archive)) {
    throw ProgramError(kInvalidCall);
  }
  const std::string native = located.Native();
  const bool read_only = (value & attribute::kReadOnly) != 0;
  const mode_t mode = info.st_mode & 07777;
  const mode_t wanted = read_only ? mode & ~mode_t{S_IWUSR} : mode | S_IWUSR;
  // A file that isn't read-only any more takes the mark, and so does one that
  // isn't yet.
  if (!read_only && wanted != mode) SetMode(located, info, wanted);
  if (!system && archive != archive_.IsSet(native, info)) {
    if (archive) {
      archive_.Set(native);
    } else if (!HasChangedSinceItsCopy(info)) {
      archive_.Clear(native, info);
    }
  }
  if (read_only && wanted != mode) SetMode(located, info, wanted);
  // That changed the file as well.
  if (wanted != mode && !archive && S_ISREG(info.st_mode)) archive_.Clear(native, info);
}

// Chosen: not while it was copied either. Its copy may hold a part of each state.
bool LinuxFiles::HasChangedSinceItsCopy(const struct stat& info) {
  const auto copied = std::exchange(copied_, std::nullopt);
  return copied && AreOneFile(*copied, info) && !SameState(*copied, info);
}

bool LinuxFiles::FolderExists(const Path& folder) {
  return IsFolder(locator_.Locate(folder));
}

bool LinuxFiles::FileExists(const Path& file) {
  const Located located = locator_.Locate(file);
  return located.found && !IsFolder(located);
}

// A file to be copied, `info` that of the file behind a link.
Located LinuxFiles::SourceOfCopy(const Path& source) {
  Located from = locator_.Locate(source);
  if (from.error != 0) RaiseNative(from.error, Attempt::kChange);
  if (!from.found) throw ProgramError(kFileNotFound);
  if (S_ISLNK(from.info.st_mode) && !StateByOwnLinks(AT_FDCWD, from.Native(), from.info)) {
    throw ProgramError(errno == EACCES ? kPermissionDenied : kFileNotFound);
  }
  RequireCopyable(from.info);
  return from;
}

void LinuxFiles::CopyWhole(const Path& source, const Path& target, Rights rights) {
  copied_.reset();
  const Located from = SourceOfCopy(source);
  const Located to = Locator::RequireTarget(locator_.Locate(target));
  if (to.found && !MayReplace(from.info, to.info)) return;
  SweepOnce(to.folder);
  const std::string native = from.Native();
  const Descriptor folder = OpenNativeFolder(to.folder + "/.", true, FolderUse::kEnter);
  copied_ = copy_.CopyFile({AT_FDCWD, native.c_str()},
                           {Links::kFollow, rights, FlushOf(rights, from.info.st_size)},
                           {{folder.Get(), to.name.c_str()}, to.folder, !to.found});
}

void LinuxFiles::CopyWhole(const Path& source, const HeldEntry& target, Rights rights) {
  copied_.reset();
  const Located from = SourceOfCopy(source);
  const auto to = TargetOf(target, from.info, false);
  if (!to) return;
  const std::string native = from.Native();
  copied_ = copy_.CopyFile({AT_FDCWD, native.c_str()}, {Links::kFollow, rights}, *to);
  LinuxFolder::Of(target).NoteMade(target.name);
}

void LinuxFiles::CopyEntry(const HeldEntry& source, const HeldEntry& target, Rights rights) {
  const NativeSpot from{LinuxFolder::Of(source).Fd(), source.name.c_str()};
  struct stat info {};
  if (::fstatat(from.folder_fd, from.path, &info, AT_SYMLINK_NOFOLLOW) != 0) {
    RaiseNative(errno, Attempt::kChange);
  }
  RequireCopyable(info);
  const auto to = TargetOf(target, info, true);
  if (!to) return;
  if (S_ISLNK(info.st_mode)) {
    copy_.CopyLink(from, info, *to);
  } else if (!AtomicCopy::TakeTime(from, rights, *to)) {
    copy_.CopyFile(from, {Links::kKeep, rights, FlushOf(rights)}, *to);
  }
  LinuxFolder::Of(target).NoteMade(target.name);
}

// Deletes what is left over in a folder before the first copy into it.
void LinuxFiles::SweepOnce(const std::string& folder) {
  if (swept_.contains(folder)) return;
  SweepFolder(folder, temporaries_);
  if (swept_.size() >= kMostSwept) swept_.clear();
  swept_.insert(folder);
}

// The folder to read a tree from; a link to one is followed.
Descriptor LinuxFiles::OpenTreeSource(const Path& source) {
  const Located located = locator_.Locate(source);
  if (located.error != 0) RaiseNative(located.error, Attempt::kQuery);
  if (!IsFolder(located)) throw ProgramError(kPathNotFound);
  return OpenNativeFolder(located.Native(), true);
}

// The folder to write a tree to, there or not. Links lead to the one that holds it.
TreeTarget LinuxFiles::TargetOfTree(const Path& target, Descriptor& parent) {
  const Located located = Locator::RequireTarget(locator_.LocateFolder(target));
  const bool is_link = located.found && !S_ISDIR(located.info.st_mode);
  if (is_link && !(IsFolder(located) && EndsInSeparator(target))) {
    throw ProgramError(kPathFileAccess);
  }
  if (is_link || located.name == ".") {
    parent = OpenNativeFolder(located.Native(), true);
    return {parent.Get(), located.Native(), {}, false};
  }
  // One that can be entered will do, like the folder of all homes.
  parent = OpenNativeFolder(located.folder + "/.", true, FolderUse::kEnter);
  return {parent.Get(), located.folder, located.name, false};
}

void LinuxFiles::CopyTree(const Path& source, const Path& target,
                          const std::function<void()>& between, Rights rights,
                          const LeftOutFolders& left_out) {
  const Descriptor from = OpenTreeSource(source);
  Descriptor parent;
  const TreeTarget to = TargetOfTree(target, parent);
  TreeCopy(temporaries_, rights, between, left_out).Run(from.Get(), to);
}

void LinuxFiles::CopyTree(const Path& source, const HeldEntry& target,
                          const std::function<void()>& between, Rights rights,
                          const LeftOutFolders& left_out) {
  CopyTree(OpenTreeSource(source), target, between, rights, left_out);
}

void LinuxFiles::CopyTree(const HeldEntry& source, const HeldEntry& target,
                          const std::function<void()>& between, Rights rights,
                          const LeftOutFolders& left_out) {
  CopyTree(OpenInnerFolder(LinuxFolder::Of(source).Fd(), source.name), target, between, rights,
           left_out);
}

void LinuxFiles::CopyTree(const Descriptor& source, const HeldEntry& target,
                          const std::function<void()>& between, Rights rights,
                          const LeftOutFolders& left_out) {
  LinuxFolder& to = LinuxFolder::Of(target);
  struct stat there {};
  const bool is_new = !IsThere({to.Fd(), target.name.c_str()}, there);
  const bool is_another = !is_new && !target.name.empty() && !to.HasExactly(target.name, there);
  if (is_another) throw ProgramError(kFileAlreadyExists);
  if (is_new) to.NoteMade(target.name);
  TreeCopy(temporaries_, rights, between, left_out)
      .Run(source.Get(), {to.Fd(), to.Native(), target.name, is_new, FlushOf(rights)});
}

void LinuxFiles::MoveTree(const Path& source, const Path& target) {
  const Located from = locator_.Locate(source);
  if (from.error != 0) RaiseNative(from.error, Attempt::kQuery);
  if (!from.found || !S_ISDIR(from.info.st_mode)) throw ProgramError(kPathNotFound);
  const Located to = Locator::RequireTarget(locator_.LocateFolder(target));
  if (to.found) throw ProgramError(kFileAlreadyExists);
  const Descriptor holder = OpenNativeFolder(from.folder + "/.", true, FolderUse::kEnter);
  Descriptor parent;
  const TreeTarget place = TargetOfTree(target, parent);
  const char* const old_name = from.name.c_str();
  const char* const new_name = place.name.c_str();
  int failed = ::renameat2(holder.Get(), old_name, place.parent_fd, new_name, RENAME_NOREPLACE);
  // The folder is to go into itself, or the medium knows only the plain way.
  if (failed != 0 && errno == EINVAL) {
    failed = ::renameat(holder.Get(), old_name, place.parent_fd, new_name);
  }
  if (failed == 0) return;
  if (errno == EEXIST) throw ProgramError(kFileAlreadyExists);
  if (errno != EXDEV && errno != EPERM) RaiseNative(errno, Attempt::kChange);
  const std::function<void()> nothing;
  TreeCopy copy(temporaries_, Rights::kSource, nothing);
  const Descriptor opened = OpenInnerFolder(holder.Get(), from.name);
  copy.Run(opened.Get(), place);
  // Nothing goes that has no copy, nor the copy itself, whichever way leads into the source.
  if (!copy.CopiedAll()) throw ProgramError(kPathFileAccess);
  EmptyFolder(opened);
  if (::unlinkat(holder.Get(), from.name.c_str(), AT_REMOVEDIR) != 0) {
    RaiseNative(errno, Attempt::kChange);
  }
}

void LinuxFiles::CreateFolder(const Path& folder) {
  MakeNative(locator_.LocateFolder(folder));
}

void LinuxFiles::CreateFoldersOf(const Path& path) {
  const auto last = path.find_last_of("\\/");
  const auto native = locator_.Drive().ToNative(path);
  if (last == Path::npos || !native || native->size() >= PATH_MAX) {
    throw ProgramError(kPathNotFound);
  }
  for (std::size_t end = path.find_first_of("\\/"); end != Path::npos;
       end = path.find_first_of("\\/", end + 1)) {
    const Located located = locator_.LocateFolder(path.substr(0, end + 1));
    if (IsFolder(located)) continue;
    MakeNative(located);
  }
}

void LinuxFiles::Delete(const Path& file) {
  const Located located = locator_.Find(file);
  if (S_ISDIR(located.info.st_mode)) throw ProgramError(kFileNotFound);
  if (!S_ISLNK(located.info.st_mode) && IsReadOnly(located.info)) {
    throw ProgramError(kPathFileAccess);
  }
  if (open_files_ != nullptr && open_files_->HoldsOpen(located.info)) {
    throw ProgramError(kPermissionDenied);
  }
  if (::unlink(located.Native().c_str()) != 0) RaiseNative(errno, Attempt::kChange);
}

std::vector<std::string> LinuxFiles::List(const Path& pattern, ListKinds kinds) {
  const auto last = pattern.find_last_of("\\/");
  if (last == Path::npos) return {};
  const auto folder = locator_.FindFolder(pattern.substr(0, last + 1));
  if (!folder) return {};
  return ListFiles(OpenNativeFolder(*folder, true), pattern.substr(last + 1), kinds, temporaries_);
}

std::vector<std::string> LinuxFiles::ListFolders(const Path& folder, ListKinds kinds) {
  const auto native = locator_.FindFolder(folder);
  if (!native) throw ProgramError(kPathNotFound);
  return ListSubFolders(OpenNativeFolder(*native, true), kinds, temporaries_);
}

std::unique_ptr<HeldFolder> LinuxFiles::OpenFolder(const Path& folder) {
  const Located located = locator_.Locate(folder);
  if (located.error != 0) RaiseNative(located.error, Attempt::kQuery);
  if (!located.found) throw ProgramError(kPathNotFound);
  return std::make_unique<LinuxFolder>(OpenNativeFolder(located.Native(), true), located.Native(),
                                       temporaries_);
}

std::string LinuxFiles::FoldCase(std::string_view name) {
  return tarnvale::FoldCase(name);
}

std::optional<std::int64_t> LinuxFiles::BeginCopies(const Path& folder) {
  std::optional<std::int64_t> since_s;
  PassedOver pass;
  pass.Step([&] {
    if (const auto native = locator_.FindFolder(folder)) {
      since_s = tarnvale::BeginCopies(OpenNativeFolder(*native, true).Get());
    }
  });
  return since_s;
}

void LinuxFiles::EndCopies(const Path& folder) {
  PassedOver pass;
  pass.Step([&] {
    if (const auto native = locator_.FindFolder(folder)) {
      tarnvale::EndCopies(OpenNativeFolder(*native, true).Get());
    }
  });
}

bool LinuxFiles::Mistrust(const HeldEntry& source, const HeldEntry& copy, std::int64_t since_s) {
  return tarnvale::Mistrust({LinuxFolder::Of(source).Fd(), source.name.c_str()},
                            {LinuxFolder::Of(copy).Fd(), copy.name.c_str()}, since_s);
}

std::unique_ptr<MediumFlush> LinuxFiles::BeginFlush(const Path& folder) {
  const auto native = locator_.FindFolder(folder);
  if (!native) throw ProgramError(kPathNotFound);
  return StartFlush(OpenNativeFolder(*native, true));
}

}  // namespace tarnvale
