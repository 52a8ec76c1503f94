// Finding files by their paths: exactly first, then without regard to case.
#pragma once

#include <sys/stat.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/linux/paths.h"
#include "platform/linux/temporaries.h"

namespace tarnvale {

/// What a path leads to.
struct Located {
  /// The native folder, without a slash at its end; empty for the root.
  std::string folder;
  /// The native name; the one that was asked for when nothing is there.
  std::string name;
  bool folder_found = false;
  bool found = false;
  /// Not one of "there" and "not there": asking was refused or failed.
  int error = 0;
  /// Of the entry itself, links not followed; set when `found`.
  struct stat info {};

  std::string Native() const { return folder + "/" + name; }
};

class Locator {
 public:
  Locator(DrivePaths drive, const Temporaries& temporaries);

  Located Locate(const Path& path);

  /// As Locate, but raises 53 when nothing is there, 76 when the folder is
  /// missing, 75 when it can't be asked.
  Located Find(const Path& path);

  /// The folder that a path names, as a native one; none when there is none. A
  /// link counts if its folder exists.
  std::optional<std::string> FindFolder(const Path& path);

  /// The name in a native folder that differs from `name` in case only; the
  /// first by bytes of several. None when there is none or the folder can't be
  /// read. Looks at the medium only when the folder changed since the last time.
  std::optional<std::string> VariantOf(const std::string& folder, const std::string& name);

  /// Tells of a change of ours to a folder: a file that was made or replaced.
  void NoteFile(const std::string& folder, const std::string& name);

  const DrivePaths& Drive() const { return drive_; }

 private:
  /// The names of one folder by their lower-case forms, and the state of the
  /// folder that they were read at.
  struct NameIndex {
    std::string folder;
    struct stat state {};
    std::unordered_map<std::string, std::string> names;
    bool valid = false;
  };

  std::optional<std::string> RealFolder(std::string_view folder);
  NameIndex* IndexOf(const std::string& folder);
  bool ReadIndex(NameIndex& index, const std::string& folder);

  DrivePaths drive_;
  const Temporaries& temporaries_;
  std::array<NameIndex, 4> indexes_;
  std::size_t next_index_ = 0;
  /// Folders that were found only without regard to case: as asked for, real.
  std::unordered_map<std::string, std::string> real_folders_;
};

}  // namespace tarnvale
