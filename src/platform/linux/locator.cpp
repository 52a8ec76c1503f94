#include "platform/linux/locator.h"

#include <cerrno>
#include <utility>

#include "base/failure.h"
#include "base/text.h"
#include "platform/linux/folder_scan.h"
#include "platform/linux/native_errors.h"

namespace tarnvale {
namespace {

constexpr std::size_t kMostRealFolders = 1024;

bool IsFolder(const std::string& native) {
  struct stat info {};
  return ::stat((native + "/.").c_str(), &info) == 0;
}

bool SameState(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_mtim.tv_sec == b.st_mtim.tv_sec &&
         a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

bool MeansMissing(int error) {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
}

}  // namespace

Locator::Locator(DrivePaths drive, const Temporaries& temporaries)
    : drive_(std::move(drive)), temporaries_(temporaries) {}

Located Locator::Locate(const Path& path) {
  Located located;
  const auto native = drive_.ToNative(path);
  if (!native) return located;
  located.folder = NativeFolderOf(*native);
  located.name = NativeNameOf(*native);
  const bool can_be_named = CanBeNamed(located.name);
  if (can_be_named && ::lstat(native->c_str(), &located.info) == 0) {
    located.found = located.folder_found = true;
    return located;
  }
  if (can_be_named && !MeansMissing(errno)) {
    located.error = errno;
    located.folder_found = true;
    return located;
  }
  auto folder = RealFolder(located.folder);
  if (!folder) return located;
  located.folder = std::move(*folder);
  located.folder_found = true;
  if (!can_be_named) return located;
  if (::lstat(located.Native().c_str(), &located.info) == 0) {
    located.found = true;
  } else if (auto variant = VariantOf(located.folder, located.name)) {
    located.name = std::move(*variant);
    located.found = ::lstat(located.Native().c_str(), &located.info) == 0;
  }
  return located;
}

Located Locator::Find(const Path& path) {
  Located located = Locate(path);
  if (located.error != 0) RaiseNative(located.error, Attempt::kAsk);
  if (!located.folder_found) throw ProgramError(kPathNotFound);
  if (!located.found) throw ProgramError(kFileNotFound);
  return located;
}

std::optional<std::string> Locator::FindFolder(const Path& path) {
  const Located located = Locate(path);
  if (!located.found) return std::nullopt;
  std::string native = located.Native();
  if (S_ISDIR(located.info.st_mode) || IsFolder(native)) return native;
  return std::nullopt;
}

std::optional<std::string> Locator::RealFolder(std::string_view folder) {
  std::string asked(folder);
  if (asked.size() <= drive_.Root().size() || IsFolder(asked)) {
    return IsFolder(asked) ? std::optional(asked) : std::nullopt;
  }
  if (const auto known = real_folders_.find(asked); known != real_folders_.end()) {
    if (IsFolder(known->second)) return known->second;
    real_folders_.erase(known);
  }
  const auto parent = RealFolder(NativeFolderOf(folder));
  if (!parent) return std::nullopt;
  const std::string name(NativeNameOf(folder));
  std::string real = *parent + "/" + name;
  struct stat info {};
  if (::lstat(real.c_str(), &info) != 0) {
    const auto variant = VariantOf(*parent, name);
    if (!variant) return std::nullopt;
    real = *parent + "/" + *variant;
  }
  if (!IsFolder(real)) return std::nullopt;
  if (real_folders_.size() >= kMostRealFolders) real_folders_.clear();
  real_folders_[asked] = real;
  return real;
}

std::optional<std::string> Locator::VariantOf(const std::string& folder, const std::string& name) {
  NameIndex* index = IndexOf(folder);
  struct stat state {};
  const bool fresh = index != nullptr && ::stat((folder + "/.").c_str(), &state) == 0 &&
                     SameState(state, index->state);
  if (!fresh) {
    if (index == nullptr) {
      index = &indexes_[next_index_];
      next_index_ = (next_index_ + 1) % indexes_.size();
    }
    if (!ReadIndex(*index, folder)) return std::nullopt;
  }
  const auto found = index->names.find(ToLower(name));
  if (found == index->names.end()) return std::nullopt;
  return found->second;
}

void Locator::NoteFile(const std::string& folder, const std::string& name) {
  NameIndex* index = IndexOf(folder);
  if (index == nullptr) return;
  index->names.try_emplace(ToLower(name), name);
  index->valid = ::stat((folder + "/.").c_str(), &index->state) == 0;
}

Locator::NameIndex* Locator::IndexOf(const std::string& folder) {
  for (NameIndex& index : indexes_) {
    if (index.valid && index.folder == folder) return &index;
  }
  return nullptr;
}

bool Locator::ReadIndex(NameIndex& index, const std::string& folder) {
  index.valid = false;
  index.names.clear();
  try {
    FolderScan scan(OpenNativeFolder(folder + "/.", true), temporaries_);
    // Taken before reading: what comes in meanwhile makes the index stale.
    if (::fstat(scan.Fd(), &index.state) != 0) return false;
    while (const dirent* entry = scan.Next()) {
      std::string name = entry->d_name;
      auto [place, added] = index.names.try_emplace(ToLower(name), name);
      if (!added && name < place->second) place->second = std::move(name);
    }
  } catch (const ProgramError&) {
    // A folder that may be entered but not read has no variants for us.
    return false;
  }
  index.folder = folder;
  index.valid = true;
  return true;
}

}  // namespace tarnvale
