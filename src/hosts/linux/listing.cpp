#include "hosts/linux/listing.h"

#include <fcntl.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "hosts/linux/file_state.h"
#include "hosts/linux/name_case.h"
#include "hosts/linux/own_links.h"
#include "platform/names.h"

namespace tarnvale {
namespace {

// What an entry is, links not followed; looked up only where reading the
// folder didn't give it. DT_UNKNOWN for one that has gone meanwhile.
unsigned char KindOf(int folder_fd, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return entry.d_type;
  struct stat info {};
  if (::fstatat(folder_fd, entry.d_name, &info, AT_SYMLINK_NOFOLLOW) != 0) return DT_UNKNOWN;
  return static_cast<unsigned char>(IFTODT(info.st_mode));
}

// As KindOf, but a link is what it leads to; one of somebody else leads nowhere.
unsigned char KindBehindLinks(int folder_fd, const dirent& entry) {
  const unsigned char kind = KindOf(folder_fd, entry);
  struct stat info {};
  if (kind != DT_LNK) return kind;
  if (!StateByOwnLinks(folder_fd, entry.d_name, info)) return DT_UNKNOWN;
  return static_cast<unsigned char>(IFTODT(info.st_mode));
}

bool IsHidden(const dirent& entry) {
  return entry.d_name[0] == '.';
}

}  // namespace

FolderEntry EntryOf(std::string name, const struct stat& info) {
  return {std::move(name), info.st_size, info.st_mtim.tv_sec,
          static_cast<std::int32_t>(info.st_mtim.tv_nsec)};
}

FolderContents ReadContents(Descriptor folder, const Temporaries& temporaries) {
  struct Unasked {
    ino_t inode;
    std::string name;
  };
  FolderContents contents;
  FolderScan scan(std::move(folder), temporaries);
  std::vector<Unasked> entries;
  while (const dirent* entry = scan.Next()) {
    if (entry->d_type == DT_DIR) {
      contents.folders.emplace_back(entry->d_name);
    } else if (entry->d_type == DT_REG || entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) {
      entries.push_back({entry->d_ino, entry->d_name});
    }
  }
  // Looked up in the order in which the medium keeps them, which spares a disk
  // that turns its seeks.
  std::sort(entries.begin(), entries.end(),
            [](const Unasked& a, const Unasked& b) { return a.inode < b.inode; });
  contents.files.reserve(entries.size());
  for (Unasked& entry : entries) {
    struct stat info {};
    if (::fstatat(scan.Fd(), entry.name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) continue;
    if (S_ISDIR(info.st_mode)) {
      contents.folders.push_back(std::move(entry.name));
    } else if (S_ISREG(info.st_mode) || S_ISLNK(info.st_mode)) {
      contents.files.push_back(EntryOf(std::move(entry.name), info));
    }
  }
  SortContents(contents);
  return contents;
}

FolderContents ReadNames(Descriptor folder, const Temporaries& temporaries) {
  FolderContents names;
  FolderScan scan(std::move(folder), temporaries);
  while (const dirent* entry = scan.Next()) {
    if (KindOf(scan.Fd(), *entry) == DT_DIR) {
      names.folders.emplace_back(entry->d_name);
    } else {
      names.files.push_back({entry->d_name});
    }
  }
  SortContents(names);
  return names;
}

bool Holds(const FolderContents& contents, std::string_view name) {
  const auto file = std::lower_bound(
      contents.files.begin(), contents.files.end(), name,
      [](const FolderEntry& a, std::string_view b) { return ComesBefore(a.name, b); });
  return (file != contents.files.end() && file->name == name) ||
         std::binary_search(contents.folders.begin(), contents.folders.end(), name, ComesBefore);
}

std::optional<std::size_t> FoundBy(int folder_fd, const std::string& name,
                                   const ListedNames& listed) {
  struct stat found {};
  if (::fstatat(folder_fd, name.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  const auto is_it = [&](std::string_view other) {
    struct stat info {};
    return ::fstatat(folder_fd, std::string(other).c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 &&
           AreOneFile(info, found);
  };
  const auto at = std::find_if(listed.begin(), listed.end(), is_it);
  if (at == listed.end()) return std::nullopt;
  return static_cast<std::size_t>(at - listed.begin());
}

std::vector<std::string> ListFiles(Descriptor folder, std::string_view pattern, ListKinds kinds,
                                   const Temporaries& temporaries) {
  std::vector<std::string> names;
  const std::string folded = FoldCase(pattern);
  FolderScan scan(std::move(folder), temporaries);
  while (const dirent* entry = scan.Next()) {
    if ((IsHidden(*entry) && !kinds.hidden) || !MatchesPattern(FoldCase(entry->d_name), folded))
      continue;
    const unsigned char kind = KindBehindLinks(scan.Fd(), *entry);
    if (kind == DT_DIR || kind == DT_UNKNOWN) continue;
    if (kind == DT_REG || kinds.system) names.emplace_back(entry->d_name);
  }
  SortNames(names);
  return names;
}

std::vector<std::string> ListSubFolders(Descriptor folder, ListKinds kinds,
                                        const Temporaries& temporaries) {
  std::vector<std::string> names;
  FolderScan scan(std::move(folder), temporaries);
  while (const dirent* entry = scan.Next()) {
    if (IsHidden(*entry) && !kinds.hidden) continue;
    if (KindOf(scan.Fd(), *entry) == DT_DIR) names.emplace_back(entry->d_name);
  }
  SortNames(names);
  return names;
}

}  // namespace tarnvale
