// Finding what a path of the logic leads to.
#pragma once

#include <optional>
#include <string>

#include "hosts/windows/file_state.h"
#include "hosts/windows/paths.h"
#include "platform/files.h"

namespace tarnvale {

struct Located {
  std::wstring native;             ///< as the path says it; empty for no path
  std::optional<FileState> state;  ///< of the link itself; none for nothing there
  bool folder_found = false;       ///< what it would lie in is a folder
  bool can_be_named = false;
  DWORD error = 0;  ///< why nothing is known of what may well be there

  bool IsFolder() const { return state && state->IsFolder(); }
};

class Locator {
 public:
  explicit Locator(DrivePaths drives) : drives_(std::move(drives)) {}

  const DrivePaths& Drives() const { return drives_; }

  /// What has this path. A separator at its end leads only to a folder.
  Located Locate(const Path& path) const;
  /// As Locate, for what is a folder or will be one.
  Located LocateFolder(const Path& path) const;

  /// As Locate, links followed. Raises 53, 76, 75.
  Located Find(const Path& path) const;

  /// For what is to be made or replaced. Raises 76, 75.
  static Located RequireTarget(Located located);

 private:
  DrivePaths drives_;
};

}  // namespace tarnvale
