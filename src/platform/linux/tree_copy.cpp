#include "platform/linux/tree_copy.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

#include "base/text.h"
#include "platform/linux/native_errors.h"

namespace tarnvale {
namespace {

enum class EntryKind { kFile, kLink, kFolder, kOther };

EntryKind KindOfMode(mode_t mode) {
  if (S_ISREG(mode)) return EntryKind::kFile;
  if (S_ISLNK(mode)) return EntryKind::kLink;
  return S_ISDIR(mode) ? EntryKind::kFolder : EntryKind::kOther;
}

EntryKind KindOfEntry(int folder_fd, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return KindOfMode(DTTOIF(entry.d_type));
  struct stat info {};
  if (::fstatat(folder_fd, entry.d_name, &info, AT_SYMLINK_NOFOLLOW) != 0) {
    return EntryKind::kOther;
  }
  return KindOfMode(info.st_mode);
}

// Makes a folder; false when it is there already. Raises 76, 75 (something else
// is there), 70.
bool MakeFolder(const std::string& path, mode_t mode) {
  if (::mkdir(path.c_str(), mode) == 0) return true;
  const int error = errno;
  struct stat info {};
  if (error == EEXIST && ::lstat(path.c_str(), &info) == 0) {
    if (S_ISDIR(info.st_mode)) return false;
    throw ProgramError(kPathFileAccess);
  }
  if (error == ENOENT) throw ProgramError(kPathNotFound);
  RaiseNative(error, Attempt::kChange);
}

void KeepFolderTime(const std::string& path, const struct stat& source) {
  const std::array<timespec, 2> times{source.st_atim, source.st_mtim};
  ::utimensat(AT_FDCWD, path.c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
}

}  // namespace

TreeCopy::TreeCopy(Temporaries& temporaries, const std::function<void()>& between)
    : temporaries_(temporaries), copy_(temporaries), between_(between) {}

void TreeCopy::Run(const std::string& source, const std::string& target) {
  CopyFolder(source, target);
  if (first_failure_) throw ProgramError(*first_failure_);
}

template <class Step>
void TreeCopy::Try(Step&& step) {
  try {
    step();
  } catch (const ProgramError& error) {
    copied_all_ = false;
    if (!first_failure_) first_failure_ = error;
  }
}

void TreeCopy::CopyFolder(const std::string& source, const std::string& target) {
  SourceNames names;
  struct stat info {};
  bool was_made = false;
  std::vector<std::pair<std::string, std::string>> folders;
  {
    // Nothing stays open while the folders inside are copied, however deep.
    FolderScan scan(OpenNativeFolder(source, false), temporaries_);
    if (::fstat(scan.Fd(), &info) != 0) RaiseNative(errno, Attempt::kAsk);
    // A folder that is copied into itself: what is made doesn't belong to it.
    if (IsTargetRoot(info)) return;
    TargetFolder into = OpenTarget(target, scan.Fd(), info);
    was_made = into.was_made;
    names = ReadSource(scan);
    CopyFiles(scan.Fd(), names, into);
    for (const std::string& name : names.folders) {
      folders.emplace_back(source + "/" + name, target + "/" + TargetNameOf(name, names, into));
    }
  }
  for (const auto& [from, to] : folders) {
    Try([&, &folder = from, &copy = to] { CopyFolder(folder, copy); });
  }
  if (was_made) KeepFolderTime(target, info);
}

TreeCopy::SourceNames TreeCopy::ReadSource(FolderScan& scan) {
  SourceNames names;
  while (const dirent* entry = scan.Next()) {
    const EntryKind kind = KindOfEntry(scan.Fd(), *entry);
    if (kind == EntryKind::kOther) {
      copied_all_ = false;
      continue;
    }
    names.all.emplace(entry->d_name);
    if (kind == EntryKind::kFolder) {
      names.folders.emplace_back(entry->d_name);
    } else {
      names.files.push_back({entry->d_name, kind == EntryKind::kLink});
    }
  }
  if (scan.LeftOut()) copied_all_ = false;
  std::sort(names.folders.begin(), names.folders.end(), ComesBefore);
  std::sort(names.files.begin(), names.files.end(),
            [](const SourceFile& a, const SourceFile& b) { return ComesBefore(a.name, b.name); });
  return names;
}

TreeCopy::TargetFolder TreeCopy::OpenTarget(const std::string& path, int source_fd,
                                            const struct stat& source) {
  // One must be able to fill it, whatever the source allows.
  const mode_t mode = (source.st_mode & 0777) | S_IRWXU;
  TargetFolder target{path, {}, MakeFolder(path, mode), {}};
  target.fd = OpenNativeFolder(path, false);
  struct stat made {};
  if (::fstat(target.fd.Get(), &made) != 0) RaiseNative(errno, Attempt::kChange);
  if (!target_root_) target_root_.emplace(made.st_dev, made.st_ino);
  if (target.was_made) {
    CopyExtendedAttributes(source_fd, target.fd.Get());
    // A medium without permissions refuses; that does no harm.
    if ((made.st_mode & 0777) != mode) ::fchmod(target.fd.Get(), mode);
  } else {
    ReadTarget(target);
  }
  return target;
}

void TreeCopy::ReadTarget(TargetFolder& target) {
  FolderScan scan(OpenNativeFolder(target.path, false), temporaries_);
  while (const dirent* entry = scan.Next()) {
    std::string name = entry->d_name;
    auto [place, added] = target.names.by_folded.try_emplace(ToLower(name), name);
    if (!added && name < place->second) place->second = name;
    target.names.all.insert(std::move(name));
  }
}

std::string TreeCopy::TargetNameOf(const std::string& name, const SourceNames& source,
                                   const TargetFolder& target) {
  if (target.was_made || target.names.all.contains(name)) return name;
  const auto variant = target.names.by_folded.find(ToLower(name));
  if (variant == target.names.by_folded.end()) return name;
  // The one that has this very name goes there.
  return source.all.contains(variant->second) ? name : variant->second;
}

void TreeCopy::CopyFiles(int source_fd, const SourceNames& source, const TargetFolder& target) {
  for (const SourceFile& file : source.files) {
    Try([&] { CopyOne(source_fd, file, target, TargetNameOf(file.name, source, target)); });
    if (between_) between_();
  }
}

void TreeCopy::CopyOne(int source_fd, const SourceFile& file, const TargetFolder& target,
                       const std::string& target_name) {
  const NativeSpot from{source_fd, file.name.c_str()};
  const bool exists = target.names.all.contains(target_name);
  const CopyTarget to{{target.fd.Get(), target_name.c_str()}, target.path, !exists};
  struct stat info {};
  if ((exists || file.is_link) &&
      ::fstatat(source_fd, from.path, &info, AT_SYMLINK_NOFOLLOW) != 0) {
    RaiseNative(errno, Attempt::kChange);
  }
  struct stat old {};
  if (exists && ::fstatat(to.spot.folder_fd, to.spot.path, &old, AT_SYMLINK_NOFOLLOW) == 0 &&
      !MayReplace(info, old)) {
    return;
  }
  if (file.is_link) {
    copy_.CopyLink(from, info, to);
  } else {
    copy_.CopyFile(from, Links::kKeep, to);
  }
}

bool TreeCopy::IsTargetRoot(const struct stat& folder) const {
  return target_root_ && *target_root_ == std::pair(folder.st_dev, folder.st_ino);
}

void RemoveTree(const std::string& folder) {
  const std::unique_ptr<DIR, int (*)(DIR*)> opened(::opendir(folder.c_str()), &::closedir);
  if (!opened) RaiseNative(errno, Attempt::kChange);
  std::vector<std::string> folders;
  while (const dirent* entry = ::readdir(opened.get())) {
    const std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    if (KindOfEntry(::dirfd(opened.get()), *entry) == EntryKind::kFolder) {
      folders.push_back(name);
    } else if (::unlinkat(::dirfd(opened.get()), name.c_str(), 0) != 0) {
      RaiseNative(errno, Attempt::kChange);
    }
  }
  for (const std::string& name : folders) RemoveTree(folder + "/" + name);
  if (::rmdir(folder.c_str()) != 0) RaiseNative(errno, Attempt::kChange);
}

}  // namespace tarnvale
