// The places of applications' data on Windows.
#pragma once

#include <optional>

#include "hosts/windows/paths.h"
#include "platform/application_folders.h"

namespace tarnvale {

/// Firefox and Thunderbird lie where they always did: the classic paths lead there on
/// newer systems too, by the system's own links. The newer Opera has a place of its own.
class WindowsApplicationFolders : public ApplicationFolders {
 public:
  explicit WindowsApplicationFolders(DrivePaths drives) : drives_(std::move(drives)) {}

  std::optional<Path> DataFolder(Application application) override;

 private:
  DrivePaths drives_;
};

}  // namespace tarnvale
