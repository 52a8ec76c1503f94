#include "hosts/linux/tree_copy.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

#include "hosts/linux/linux_folder.h"
#include "hosts/linux/listing.h"
#include "hosts/linux/name_case.h"
#include "hosts/linux/native_errors.h"
#include "hosts/linux/paths.h"
#include "platform/names.h"

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
// is there), 58 (one of another name is there), 70.
bool MakeFolder(int parent_fd, const std::string& name, mode_t mode, bool is_new) {
  if (::mkdirat(parent_fd, name.c_str(), mode) == 0) return true;
  const int error = errno;
  struct stat info {};
  if (error == EEXIST && ::fstatat(parent_fd, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0) {
    if (S_ISDIR(info.st_mode) && !is_new) return false;
    throw ProgramError(is_new ? kFileAlreadyExists : kPathFileAccess);
  }
  if (error == ENOENT) throw ProgramError(kPathNotFound);
  RaiseNative(error, Attempt::kChange);
}

// What a new folder is made with. One must be able to fill it, whatever the source
// allows. Where the sticky bit doesn't go along, nor does what it guarded.
mode_t FolderMode(mode_t source, Rights rights) {
  if (rights == Rights::kOwner) return S_IRWXU;
  if (rights == Rights::kSource) return (source & 01777) | S_IRWXU;
  const mode_t guarded = (source & S_ISVTX) != 0 ? S_IWGRP | S_IWOTH : 0;
  return (source & 0777 & ~guarded) | S_IRWXU;
}

std::string Joined(const std::string& folder, const std::string& name) {
  if (folder.empty() || name.empty()) return folder + name;
  return folder + "/" + name;
}

}  // namespace

TreeCopy::TreeCopy(Temporaries& temporaries, Rights rights, const std::function<void()>& between,
                   const LeftOutFolders& left_out)
    : temporaries_(temporaries), copy_(temporaries), rights_(rights), between_(between) {
  for (const HeldFolder* folder : left_out) {
    struct stat info {};
    if (::fstat(static_cast<const LinuxFolder*>(folder)->Fd(), &info) != 0) {
      RaiseNative(errno, Attempt::kQuery);
    }
    left_out_.emplace_back(info.st_dev, info.st_ino);
  }
}

void TreeCopy::Run(int source_fd, const TreeTarget& target) {
  source_fd_ = source_fd;
  target_fd_ = target.parent_fd;
  target_path_ = target.parent;
  flush_ = target.flush;
  Try([&] { CopyFolder({}, target.name, target.is_new); });
  while (!levels_.empty()) {
    Level& level = levels_.back();
    if (level.next == level.folders.size()) {
      if (level.was_made) KeepFolderTime(level);
      levels_.pop_back();
      continue;
    }
    const SubFolder& folder = level.folders[level.next++];
    const std::string from = Joined(level.source, folder.source);
    const std::string to = Joined(level.target, folder.target);
    Try([&, is_new = folder.is_new] { CopyFolder(from, to, is_new); });
  }
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

// Copies the files of one folder. Nothing of it stays open, however deep it goes on:
// the folders in it are found by their names below the roots.
void TreeCopy::CopyFolder(const std::string& source, const std::string& target, bool is_new) {
  Level level{source, target, {}, 0, false, {}};
  FolderScan scan(OpenInnerFolder(source_fd_, source), temporaries_);
  if (::fstat(scan.Fd(), &level.info) != 0) RaiseNative(errno, Attempt::kQuery);
  if (!source.empty() && IsLeftOut(level.info)) {
    copied_all_ = false;
    return;
  }
  const TargetFolder into = OpenTarget(target, is_new, scan.Fd(), level.info);
  level.was_made = into.was_made;
  const FolderContents names = ReadSource(scan);
  const auto find = [&](const std::string& name, const ListedNames& listed) {
    return FoundBy(into.fd.Get(), name, listed);
  };
  const NamePairs pairs = PairNames(names, into.names, {&FoldCase, {}, find});
  CopyFiles(scan.Fd(), names, into, pairs);
  for (std::size_t i = 0; i < names.folders.size(); ++i) {
    const std::string& name = names.folders[i];
    const bool is_paired = pairs.folders[i] != NamePairs::kNone;
    level.folders.push_back({name, is_paired ? into.names.folders[pairs.folders[i]] : name,
                             !is_paired && !Holds(into.names, name)});
  }
  levels_.push_back(std::move(level));
}

FolderContents TreeCopy::ReadSource(FolderScan& scan) {
  FolderContents names;
  while (const dirent* entry = scan.Next()) {
    const EntryKind kind = KindOfEntry(scan.Fd(), *entry);
    if (kind == EntryKind::kOther) {
      copied_all_ = false;
    } else if (kind == EntryKind::kFolder) {
      names.folders.emplace_back(entry->d_name);
    } else {
      names.files.push_back({entry->d_name});
    }
  }
  if (scan.LeftOutFolders()) copied_all_ = false;
  SortContents(names);
  return names;
}

TreeCopy::TargetFolder TreeCopy::OpenTarget(const std::string& path, bool is_new, int source_fd,
                                            const struct stat& source) {
  const mode_t mode = FolderMode(source.st_mode, rights_);
  const std::string name(NativeNameOf(path));
  const Descriptor parent = OpenInnerFolder(target_fd_, NativeFolderOf(path), FolderUse::kEnter);
  TargetFolder target;
  target.path = path.empty() ? target_path_ : target_path_ + "/" + path;
  target.was_made = !name.empty() && MakeFolder(parent.Get(), name, mode, is_new);
  target.fd = OpenInnerFolder(parent.Get(), name);
  struct stat made {};
  if (::fstat(target.fd.Get(), &made) != 0) RaiseNative(errno, Attempt::kChange);
  // A folder that is copied into itself: what is made doesn't belong to it.
  if (!std::exchange(has_target_root_, true)) left_out_.emplace_back(made.st_dev, made.st_ino);
  if (target.was_made) {
    CopyExtendedAttributes(source_fd, target.fd.Get(), rights_);
    // A medium without permissions refuses; that does no harm.
    if (rights_ == Rights::kSource && (made.st_mode & 01777) != mode) {
      ::fchmod(target.fd.Get(), mode);
    }
    return target;
  }
  target.names = ReadNames(OpenInnerFolder(target.fd.Get(), {}), temporaries_);
  return target;
}

void TreeCopy::CopyFiles(int source_fd, const FolderContents& source, const TargetFolder& target,
                         const NamePairs& pairs) {
  for (std::size_t i = 0; i < source.files.size(); ++i) {
    const std::string& name = source.files[i].name;
    const bool is_paired = pairs.files[i] != NamePairs::kNone;
    const std::string& target_name = is_paired ? target.names.files[pairs.files[i]].name : name;
    Try([&] { CopyOne(source_fd, name, target, target_name, is_paired); });
    if (between_) between_();
  }
}

void TreeCopy::CopyOne(int source_fd, const std::string& name, const TargetFolder& target,
                       const std::string& target_name, bool is_paired) {
  const NativeSpot from{source_fd, name.c_str()};
  struct stat info {};
  if (::fstatat(source_fd, from.path, &info, AT_SYMLINK_NOFOLLOW) != 0) {
    RaiseNative(errno, Attempt::kChange);
  }
  struct stat old {};
  const NativeSpot spot{target.fd.Get(), target_name.c_str()};
  const bool exists = IsThere(spot, old);
  // What has come there since is another one, too.
  if (exists && !is_paired && !Holds(target.names, name)) throw ProgramError(kFileAlreadyExists);
  if (exists && !MayReplace(info, old)) return;
  // What is there is to be replaced, but nothing that comes meanwhile.
  const CopyTarget to{spot, target.path, !exists, !exists};
  if (S_ISLNK(info.st_mode)) {
    if (!copy_.CopyLink(from, info, to)) copied_all_ = false;
  } else {
    copy_.CopyFile(from, {Links::kKeep, rights_, flush_}, to);
  }
}

void TreeCopy::KeepFolderTime(const Level& level) const {
  PassedOver pass;
  pass.Step([&] {
    const std::array<timespec, 2> times{level.info.st_atim, level.info.st_mtim};
    ::futimens(OpenInnerFolder(target_fd_, level.target).Get(), times.data());
  });
}

bool TreeCopy::IsLeftOut(const struct stat& folder) const {
  return std::find(left_out_.begin(), left_out_.end(), std::pair(folder.st_dev, folder.st_ino)) !=
         left_out_.end();
}

void EmptyFolder(const Descriptor& folder) {
  std::vector<std::string> folders{{}};
  for (std::size_t i = 0; i < folders.size(); ++i) {
    const std::unique_ptr<DIR, int (*)(DIR*)> opened(
        ::fdopendir(OpenInnerFolder(folder.Get(), folders[i]).Release()), &::closedir);
    if (!opened) RaiseNative(errno, Attempt::kChange);
    while (const dirent* entry = ::readdir(opened.get())) {
      const std::string name = entry->d_name;
      if (name == "." || name == "..") continue;
      if (KindOfEntry(::dirfd(opened.get()), *entry) == EntryKind::kFolder) {
        folders.push_back(Joined(folders[i], name));
      } else if (::unlinkat(::dirfd(opened.get()), name.c_str(), 0) != 0) {
        RaiseNative(errno, Attempt::kChange);
      }
    }
  }
  for (std::size_t i = folders.size(); --i > 0;) {
    const Descriptor parent = OpenInnerFolder(folder.Get(), NativeFolderOf(folders[i]));
    const std::string name(NativeNameOf(folders[i]));
    if (::unlinkat(parent.Get(), name.c_str(), AT_REMOVEDIR) != 0) {
      RaiseNative(errno, Attempt::kChange);
    }
  }
}

}  // namespace tarnvale
