// Finding files by their paths: exactly first, then without regard to case.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <string_view>

#include "hosts/linux/paths.h"
#include "hosts/linux/temporaries.h"

namespace tarnvale {

/// What a path leads to.
struct Located {
  /// The native folder, without a slash at its end; empty for the root.
  std::string folder;
  /// The native name; the one that was looked for when nothing is there.
  std::string name;
  bool folder_found = false;
  bool found = false;
  /// Not one of "there" and "not there": looking was refused or failed.
  int error = 0;
  /// Of the entry itself, links not followed; set when `found`.
  struct stat info {};

  std::string Native() const { return folder + "/" + name; }
};

/// Keeps nothing of what it saw: names change, and a folder's time is too coarse to
/// show that.
class Locator {
 public:
  Locator(DrivePaths drive, const Temporaries& temporaries);

  /// A path that is too long for the system leads to nothing. With a separator at its
  /// end it leads to a folder, or else to a missing one: no file is made there.
  Located Locate(const Path& path) const;
  /// Likewise, but that folder may be about to be made.
  Located LocateFolder(const Path& path) const;

  /// As Locate, but raises 53 when nothing is there, 76 when the folder is
  /// missing, 75 when it can't be looked at.
  Located Find(const Path& path) const;

  /// For what is to be made or replaced. Raises 76 when the folder is missing, 75 when the
  /// name can't be one, 70 or 57 when it can't be looked at.
  static Located RequireTarget(Located located);

  /// The folder that a path names, as a native one; none when there is none. A
  /// link counts if its folder exists. Raises 75 when it can't be looked at.
  std::optional<std::string> FindFolder(const Path& path) const;

  const DrivePaths& Drive() const { return drive_; }

 private:
  std::optional<std::string> RealFolder(std::string_view folder) const;
  std::optional<std::string> VariantOf(const std::string& folder, const std::string& name) const;

  DrivePaths drive_;
  const Temporaries& temporaries_;
};

}  // namespace tarnvale
