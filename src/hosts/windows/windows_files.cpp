#include "hosts/windows/windows_files.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/failure.h"
#include "hosts/windows/name_case.h"
#include "hosts/windows/native_errors.h"
#include "hosts/windows/replacing_copy.h"
#include "hosts/windows/volume.h"
#include "hosts/windows/wide.h"
#include "hosts/windows/windows_processes.h"
#include "platform/names.h"
#include "platform/path_text.h"
#include "platform/temporary_name.h"
#include "platform/tree_copy.h"

namespace tarnvale {
namespace {

class FlushedAlready final : public MediumFlush {
 public:
  bool IsDone() override { return true; }
};

bool SameState(const FileState& a, const FileState& b) {
  return a.size_bytes == b.size_bytes && a.modified == b.modified;
}

bool HaveSameBytes(HANDLE a, HANDLE b) {
  std::vector<char> bytes_a(65536);
  std::vector<char> bytes_b(bytes_a.size());
  const auto size = static_cast<DWORD>(bytes_a.size());
  while (true) {
    DWORD got_a = 0;
    DWORD got_b = 0;
    if (::ReadFile(a, bytes_a.data(), size, &got_a, nullptr) == 0 ||
        ::ReadFile(b, bytes_b.data(), size, &got_b, nullptr) == 0 || got_a != got_b ||
        !std::equal(bytes_a.begin(), bytes_a.begin() + got_a, bytes_b.begin())) {
      return false;
    }
    if (got_a == 0) return true;
  }
}

// Where two times may be those of a file and its copy: media keep them in steps of two
// seconds, or of less, and local ones were perhaps those of another zone.
bool MayBeOfOneFile(std::uint64_t a, std::uint64_t b, bool are_local) {
  constexpr std::uint64_t kSecond = 10'000'000;
  constexpr std::uint64_t kStep = 2 * kSecond;
  constexpr std::uint64_t kZones = 15 * 60 * kSecond;
  constexpr std::uint64_t kMostApart = 26 * 3600 * kSecond;
  const std::uint64_t apart = std::max(a, b) - std::min(a, b);
  if (!are_local || apart > kMostApart + kStep) return apart <= kStep;
  return (apart + kStep) % kZones <= 2 * kStep;
}

// Such a medium gives a copy a time that is a little later. On its way back it would
// replace the very file that it was made from, with all that such media don't keep. One
// that has its bytes takes the copy's time instead, so that the next run finds both alike.
// Nobody can write to it meanwhile.
bool TakesTime(const std::wstring& source, const FileState& state, const std::wstring& target,
               const FileState& there, std::uint64_t time) {
  if (state.size_bytes != there.size_bytes || there.is_link) return false;
  const auto open = [](const std::wstring& native, DWORD access) {
    return Handle(::CreateFileW(native.c_str(), access, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  };
  const Handle from = open(source, GENERIC_READ);
  const Handle to = open(target, GENERIC_READ | FILE_WRITE_ATTRIBUTES);
  if (!from || !to || !HaveSameBytes(from.Get(), to.Get())) return false;
  const FILETIME native_time = FileTimeOf(time);
  return ::SetFileTime(to.Get(), nullptr, nullptr, &native_time) != 0;
}

void MakeOne(const Located& located) {
  const Located target = Locator::RequireTarget(located);
  if (target.state) throw ProgramError(kPathFileAccess);
  if (::CreateDirectoryW(target.native.c_str(), nullptr) != 0) return;
  if (::GetLastError() == ERROR_ALREADY_EXISTS) throw ProgramError(kPathFileAccess);
  RaiseLast(Attempt::kChange);
}

// Deletes a folder with all that is in it; links are deleted, not followed.
void RemoveTree(const std::wstring& folder) {
  {
    FolderListing listing(folder);
    while (const auto* entry = listing.Next()) {
      const std::wstring native = Joined(folder, entry->cFileName);
      const FileState state = StateOf(*entry);
      if (state.IsReadOnly()) ::SetFileAttributesW(native.c_str(), FILE_ATTRIBUTE_NORMAL);
      if (state.IsFolder() && !state.is_link) {
        RemoveTree(native);
      } else if ((state.IsFolder() ? ::RemoveDirectoryW(native.c_str())
                                   : ::DeleteFileW(native.c_str())) == 0) {
        RaiseLast(Attempt::kChange);
      }
    }
  }
  if (::RemoveDirectoryW(folder.c_str()) == 0) RaiseLast(Attempt::kChange);
}

// Whether all in a folder is in its copy, whose root doesn't lie in it, whichever way
// leads there.
bool HasAll(HeldFolder& folder, HeldFolder& copy, const HeldFolder& copy_root) {
  const FolderContents contents = folder.Contents();
  return std::all_of(contents.files.begin(), contents.files.end(),
                     [&](const FolderEntry& file) { return copy.File(file.name).has_value(); }) &&
         std::all_of(contents.folders.begin(), contents.folders.end(),
                     [&](const std::string& name) {
                       const auto inner = folder.Inner(name);
                       return !inner->Is(copy_root) && HasAll(*inner, *copy.Inner(name), copy_root);
                     });
}

// What has an entry's place. Raises 58 for what only the medium takes for it.
std::optional<FileState> TargetState(const HeldEntry& target) {
  WindowsFolder& folder = WindowsFolder::Of(target.folder);
  folder.RequirePresent();
  auto there = StateOf(folder.NativeOf(target.name), Links::kKeep);
  if (there && !folder.HasExactly(target.name)) throw ProgramError(kFileAlreadyExists);
  return there;
}

bool IsListed(const FileState& state, ListKinds kinds) {
  return ((state.attributes & FILE_ATTRIBUTE_HIDDEN) == 0 || kinds.hidden) &&
         ((state.attributes & FILE_ATTRIBUTE_SYSTEM) == 0 || kinds.system);
}

}  // namespace

WindowsFiles::WindowsFiles(const Locator& locator, Temporaries& temporaries,
                           std::wstring program_file, SetAttributesCall set_attributes)
    : locator_(locator),
      temporaries_(temporaries),
      program_file_(std::move(program_file)),
      set_attributes_(std::move(set_attributes)) {}

std::string WindowsFiles::FoldCase(std::string_view name) {
  return tarnvale::FoldCase(name);
}

Path WindowsFiles::ProgramFolder() {
  Path folder = locator_.Drives().FromNative(NativeFolderOf(program_file_));
  if (EndsInSeparator(folder)) folder.pop_back();
  return folder;
}

std::int64_t WindowsFiles::Length(const Path& file) {
  const Located located = locator_.Find(file);
  if (located.IsFolder()) throw ProgramError(kFileNotFound);
  return located.state->size_bytes;
}

int WindowsFiles::Attributes(const Path& path) {
  const DWORD attributes = locator_.Find(path).state->attributes;
  return static_cast<int>(attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_NORMAL));
}

void WindowsFiles::SetAttributes(const Path& file, int value) {
  constexpr int kAll =
      attribute::kReadOnly | attribute::kHidden | attribute::kSystem | attribute::kArchive;
  if (value < 0 || (value & ~kAll) != 0) throw ProgramError(kInvalidCall);
  const Located located = locator_.Find(file);
  if (located.IsFolder()) throw ProgramError(kPathFileAccess);
  const auto copied = std::exchange(copied_, std::nullopt);
  // Chosen: not while it was copied either. Its copy may hold a part of each state.
  const bool has_changed =
      copied && copied->first == located.native && !SameState(copied->second, *located.state);
  if (has_changed && (located.state->attributes & FILE_ATTRIBUTE_ARCHIVE) != 0) {
    value |= attribute::kArchive;
  }
  const DWORD wanted = value == 0 ? FILE_ATTRIBUTE_NORMAL : static_cast<DWORD>(value);
  // By its own path a link's are set.
  const std::wstring native = located.state->is_link ? BehindLinks(located.native) : located.native;
  if (!set_attributes_(native, wanted)) RaiseLast(Attempt::kQuery);
}

bool WindowsFiles::FolderExists(const Path& folder) {
  const Located located = locator_.Locate(folder);
  if (!located.state || !located.state->is_link) return located.IsFolder();
  const auto behind = StateOf(located.native, Links::kFollow);
  return behind && behind->IsFolder();
}

bool WindowsFiles::FileExists(const Path& file) {
  return locator_.Locate(file).state && !FolderExists(file);
}

WindowsFiles::CopySource WindowsFiles::SourceOfCopy(const Path& source) {
  const Located from = locator_.Locate(source);
  if (from.error != 0) RaiseNative(from.error, Attempt::kChange);
  if (!from.state) throw ProgramError(kFileNotFound);
  const auto state = from.state->is_link ? StateOf(from.native, Links::kFollow) : from.state;
  if (!state) RaiseLast(Attempt::kChange);
  if (state->IsFolder()) throw ProgramError(kFileNotFound);
  return {from.native, *state};
}

void WindowsFiles::CopyFileTo(const CopySource& source, const std::wstring& target,
                              const std::optional<FileState>& there, Rights rights,
                              const CopyExtras& extras) {
  if (there) {
    RequireReplaceable(source.state, *there);
    if (SameState(source.state, *there) && AreOneFile(source.native, target)) return;
  }
  CopyFileBeside(slot_, source.native, source.state.attributes, target, there.has_value(), rights,
                 extras);
}

void WindowsFiles::CopyWhole(const Path& source, const Path& target, Rights rights) {
  copied_.reset();
  const CopySource from = SourceOfCopy(source);
  const Located to = Locator::RequireTarget(locator_.Locate(target));
  const std::wstring folder = NativeFolderOf(to.native);
  temporaries_.SweepOnce(folder);
  // What is there keeps the case of its name.
  const std::wstring listed = to.state && !to.IsFolder() ? ListedName(to.native) : std::wstring();
  CopyFileTo(from, listed.empty() ? to.native : Joined(folder, listed), to.state, rights);
  copied_.emplace(from.native, from.state);
}

void WindowsFiles::CopyWhole(const Path& source, const HeldEntry& target, Rights rights) {
  copied_.reset();
  const CopySource from = SourceOfCopy(source);
  WindowsFolder& folder = WindowsFolder::Of(target.folder);
  const std::wstring to = folder.NativeOf(target.name);
  CopyFileTo(from, to, TargetState(target), rights);
  folder.NoteMade(target.name);
  copied_.emplace(from.native, from.state);
}

void WindowsFiles::CopyEntry(const HeldEntry& source, const HeldEntry& target, Rights rights) {
  WindowsFolder& from_folder = WindowsFolder::Of(source.folder);
  WindowsFolder& to_folder = WindowsFolder::Of(target.folder);
  from_folder.RequirePresent();
  const std::wstring from = from_folder.NativeOf(source.name);
  const std::wstring to = to_folder.NativeOf(target.name);
  const auto state = StateOf(from, Links::kKeep);
  if (!state) RaiseLast(Attempt::kChange);
  if (state->IsFolder() && !state->is_link) throw ProgramError(kFileNotFound);
  const auto there = TargetState(target);
  const auto is_as_seen = [&] {
    const auto now = StateOf(to, Links::kKeep);
    return now.has_value() == there.has_value() && (!now || SameState(*now, *there));
  };
  const bool are_local = from_folder.Times().AreLocal() || to_folder.Times().AreLocal();
  const std::uint64_t time = from_folder.Times().FromMedium(state->modified);
  const std::uint64_t to_time = to_folder.Times().ToMedium(time);
  if (state->is_link) {
    if (there) RequireReplaceable(*state, *there);
    if (!CopyLink(temporaries_, from, *state, to, there.has_value())) return;
  } else if (!there || rights != Rights::kNewFile ||
             !MayBeOfOneFile(time, to_folder.Times().FromMedium(there->modified), are_local) ||
             !TakesTime(from, *state, to, *there, to_time)) {
    const bool has_other_time = to_time != state->modified;
    CopyFileTo({from, *state}, to, there, rights,
               {is_as_seen, has_other_time ? std::optional(to_time) : std::nullopt});
  }
  to_folder.NoteMade(target.name);
}

std::unique_ptr<HeldFolder> WindowsFiles::TreeTarget(const Path& target) {
  const Located located = Locator::RequireTarget(locator_.LocateFolder(target));
  if (!located.state) {
    MakeOne(located);
  } else if (!located.IsFolder() || (located.state->is_link && !EndsInSeparator(target))) {
    throw ProgramError(kPathFileAccess);
  }
  return OpenFolder(target);
}

std::unique_ptr<HeldFolder> WindowsFiles::TreeTarget(const HeldEntry& target) {
  if (target.name.empty()) return target.folder.Inner({});
  const auto there = TargetState(target);
  if (!there) {
    target.folder.MakeFolder(target.name);
  } else if (!there->IsFolder() || there->is_link) {
    throw ProgramError(kPathFileAccess);
  }
  return target.folder.Inner(target.name);
}

void WindowsFiles::CopyTree(HeldFolder& source, HeldFolder& target,
                            const std::function<void()>& between, Rights rights,
                            const LeftOutFolders& left_out) {
  const auto keep_time = [](HeldFolder& from, HeldFolder& made) {
    FILETIME time{};
    const std::wstring& native = WindowsFolder::Of(made).Native();
    const Handle folder(::CreateFileW(native.c_str(), FILE_WRITE_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    // A medium may refuse; that does no harm.
    if (folder && ::GetFileTime(WindowsFolder::Of(from).Get(), nullptr, nullptr, &time) != 0) {
      ::SetFileTime(folder.Get(), nullptr, nullptr, &time);
    }
    BY_HANDLE_FILE_INFORMATION info{};
    if (::GetFileInformationByHandle(WindowsFolder::Of(from).Get(), &info) == 0) return;
    const DWORD hides = info.dwFileAttributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    if (hides != 0) ::SetFileAttributesW(native.c_str(), hides);
  };
  CopyContents(*this, source, target, rights, left_out, between, keep_time);
}

void WindowsFiles::CopyTree(const Path& source, const Path& target,
                            const std::function<void()>& between, Rights rights,
                            const LeftOutFolders& left_out) {
  const auto from = OpenFolder(source);
  const auto to = TreeTarget(target);
  CopyTree(*from, *to, between, rights, left_out);
}

void WindowsFiles::CopyTree(const Path& source, const HeldEntry& target,
                            const std::function<void()>& between, Rights rights,
                            const LeftOutFolders& left_out) {
  const auto from = OpenFolder(source);
  const auto to = TreeTarget(target);
  CopyTree(*from, *to, between, rights, left_out);
}

void WindowsFiles::CopyTree(const HeldEntry& source, const HeldEntry& target,
                            const std::function<void()>& between, Rights rights,
                            const LeftOutFolders& left_out) {
  const auto from = source.folder.Inner(source.name);
  const auto to = TreeTarget(target);
  CopyTree(*from, *to, between, rights, left_out);
}

void WindowsFiles::MoveTree(const Path& source, const Path& target) {
  const Located from = locator_.Locate(source);
  if (!from.IsFolder() || from.state->is_link) throw ProgramError(kPathNotFound);
  const Located to = Locator::RequireTarget(locator_.LocateFolder(target));
  if (to.state) throw ProgramError(kFileAlreadyExists);
  // A folder that goes into itself would be deleted with its source.
  const std::string start = FoldCase(Narrow(from.native)) + "\\";
  if (FoldCase(Narrow(to.native)).compare(0, start.size(), start) == 0) {
    throw ProgramError(kPathFileAccess);
  }
  CopyTree(source, target, {}, Rights::kSource);
  const auto copy = OpenFolder(target);
  if (!HasAll(*OpenFolder(source), *copy, *copy)) throw ProgramError(kPathFileAccess);
  RemoveTree(from.native);
}

void WindowsFiles::CreateFolder(const Path& folder) {
  MakeOne(locator_.LocateFolder(folder));
}

void WindowsFiles::CreateFoldersOf(const Path& path) {
  const auto last = path.find_last_of("\\/");
  if (last == Path::npos || !TakeApart(path)) throw ProgramError(kPathNotFound);
  for (std::size_t at = path.find_first_of("\\/"); at <= last;
       at = path.find_first_of("\\/", at + 1)) {
    const Path folder = path.substr(0, at + 1);
    const Located located = locator_.LocateFolder(folder);
    if (located.state && !FolderExists(folder)) throw ProgramError(kPathFileAccess);
    if (!located.state) MakeOne(located);
  }
}

void WindowsFiles::Delete(const Path& file) {
  const Located located = locator_.Locate(file);
  if (located.error != 0) RaiseNative(located.error, Attempt::kChange);
  if (!located.folder_found) throw ProgramError(kPathNotFound);
  if (!located.state || (located.IsFolder() && !located.state->is_link)) {
    throw ProgramError(kFileNotFound);
  }
  if (located.state->IsReadOnly()) throw ProgramError(kPathFileAccess);
  if (located.IsFolder()) {
    if (::RemoveDirectoryW(located.native.c_str()) == 0) RaiseLast(Attempt::kChange);
    return;
  }
  // A scanner that has the file open would keep its name taken until it is done.
  const std::wstring& aside = slot_.Begin(NativeFolderOf(located.native));
  const bool is_aside = ::MoveFileExW(located.native.c_str(), aside.c_str(), 0) != 0;
  if (::DeleteFileW((is_aside ? aside : located.native).c_str()) != 0) return;
  const DWORD error = ::GetLastError();
  if (is_aside) ::MoveFileExW(aside.c_str(), located.native.c_str(), 0);
  RaiseNative(error, Attempt::kChange);
}

// Newer systems have their own folders at the places of older ones as links that nobody
// may list: what they lead to may be.
std::wstring WindowsFiles::FolderToRead(const Located& located) {
  return located.state && located.state->is_link ? BehindLinks(located.native) : located.native;
}

std::vector<std::string> WindowsFiles::List(const Path& pattern, ListKinds kinds) {
  const auto last = pattern.find_last_of("\\/");
  if (last == Path::npos) return {};
  const Path folder = pattern.substr(0, last + 1);
  const Located located = locator_.Locate(folder);
  if (located.error != 0) RaiseNative(located.error, Attempt::kQuery);
  if (!FolderExists(folder)) return {};
  const std::string folded = FoldCase(pattern.substr(last + 1));
  std::vector<std::string> names;
  FolderListing listing(FolderToRead(located));
  while (const auto* entry = listing.Next()) {
    std::string name = Narrow(entry->cFileName);
    const FileState state = StateOf(*entry);
    if (!state.IsFolder() && !state.is_special && IsListed(state, kinds) && !IsOwnName(name) &&
        CanBeFound(entry->cFileName) && MatchesPattern(FoldCase(name), folded)) {
      names.push_back(std::move(name));
    }
  }
  SortNames(names);
  return names;
}

std::vector<std::string> WindowsFiles::ListFolders(const Path& folder, ListKinds kinds) {
  if (!FolderExists(folder)) throw ProgramError(kPathNotFound);
  std::vector<std::string> names;
  FolderListing listing(FolderToRead(locator_.Locate(folder)));
  while (const auto* entry = listing.Next()) {
    const FileState state = StateOf(*entry);
    if (state.IsFolder() && !state.is_link && IsListed(state, kinds) &&
        CanBeFound(entry->cFileName)) {
      names.push_back(Narrow(entry->cFileName));
    }
  }
  SortNames(names);
  return names;
}

std::unique_ptr<HeldFolder> WindowsFiles::OpenFolder(const Path& folder) {
  if (!FolderExists(folder)) throw ProgramError(kPathNotFound);
  const std::wstring native = FolderToRead(locator_.Locate(folder));
  Handle opened = OpenForHolding(native, Links::kFollow);
  if (!opened) RaiseLast(Attempt::kQuery);
  const MediumTimes times(VolumeOf(native).HoldsLocalTimes());
  return std::make_unique<WindowsFolder>(std::move(opened), native, times, temporaries_);
}

std::unique_ptr<MediumFlush> WindowsFiles::BeginFlush(const Path& folder) {
  if (!FolderExists(folder)) throw ProgramError(kPathNotFound);
  return std::make_unique<FlushedAlready>();
}

}  // namespace tarnvale
