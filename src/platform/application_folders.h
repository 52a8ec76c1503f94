// Where other applications keep what belongs to the user.
#pragma once

#include <optional>

#include "platform/files.h"

namespace tarnvale {

enum class Application { kFirefox, kOpera, kThunderbird };

class ApplicationFolders {
 public:
  virtual ~ApplicationFolders() = default;

  /// The folder that holds an application's profiles of the present user,
  /// without a backslash at its end unless it is a link, which is to be
  /// followed. It needn't exist. None on a system where it lies at its classic
  /// place below the user's profile folder. Looks anew at each call.
  virtual std::optional<Path> DataFolder(Application application) = 0;
};

}  // namespace tarnvale
