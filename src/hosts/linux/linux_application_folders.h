// The places of applications' data on Linux.
#pragma once

#include <optional>
#include <string>

#include "hosts/linux/paths.h"
#include "platform/application_folders.h"

namespace tarnvale {

/// Native folders below which applications keep the user's data.
struct UserFolders {
  std::string home;
  /// For what follows the directory standard.
  std::string config;

  /// Those of the environment: $HOME, or what the user's entry says, and
  /// $XDG_CONFIG_HOME, or ~/.config.
  static UserFolders Present();
};

/// Knows all three applications, each as the distribution's package, as one in
/// a sandbox of its own, or as both: the first place that exists counts, the
/// package's own when there is none.
class LinuxApplicationFolders : public ApplicationFolders {
 public:
  LinuxApplicationFolders(DrivePaths drive, UserFolders folders);

  std::optional<Path> DataFolder(Application application) override;

 private:
  DrivePaths drive_;
  UserFolders folders_;
};

}  // namespace tarnvale
