// The archive attribute: set on every file that changed since it was cleared.
#pragma once

#include <sys/stat.h>

#include <string>

#include "platform/linux/archive_index.h"

namespace tarnvale {

/// The extended attribute that holds the mark of a cleared file.
inline constexpr char kArchivedAttribute[] = "user.tarnvale.archived";

/// Clearing stores the file's size and modification time, in an extended
/// attribute of the file; the attribute counts as set again as soon as either
/// differs. Where the medium or the file's permissions don't allow that, media
/// with an archive bit of their own use it, and others the index.
class ArchiveBit {
 public:
  explicit ArchiveBit(const std::string& state_folder) : index_(state_folder) {}

  /// `info` is the file's, links followed. Raises 75.
  bool IsSet(const std::string& native, const struct stat& info);

  /// Raises 75 when it can be kept nowhere.
  void Clear(const std::string& native, const struct stat& info);
  void Set(const std::string& native);

 private:
  ArchiveIndex index_;
};

}  // namespace tarnvale
