// The archive attribute: set on every file that changed since it was cleared.
#pragma once

#include <sys/stat.h>

#include <string>

#include "hosts/linux/archive_index.h"

namespace tarnvale {

/// The extended attribute that holds the mark of a cleared file.
inline constexpr char kArchivedAttribute[] = "user.tarnvale.archived";

/// Clearing notes which file it was, by size, times, inode and birth
/// time, twice: in the index, under the file's path, and in an extended attribute of
/// the file, with its path. The attribute is set again as soon as anything of it
/// differs. The index decides; the file's own mark serves where it knows nothing. Media
/// with an archive bit use that in place of the mark, and then both must say so.
class ArchiveBit {
 public:
  ArchiveBit(const std::string& state_folder, Temporaries& temporaries)
      : index_(state_folder, temporaries) {}

  /// `info` is the file's, links followed. Raises 75.
  bool IsSet(const std::string& native, const struct stat& info);

  /// Raises 75 when the index can't be written; it stays as it was then.
  void Clear(const std::string& native, const struct stat& info);
  /// Raises 75.
  void Set(const std::string& native);

 private:
  ArchiveIndex index_;
};

}  // namespace tarnvale
