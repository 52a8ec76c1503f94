// Between the program's paths and the desktop's.
#pragma once

#include <functional>
#include <string>

#include "platform/files.h"

namespace tarnvale {

struct PathTranslation {
  /// An absolute native path in the program's path language; empty when no path
  /// can name it.
  std::function<Path(const std::string& native)> to_program;
  /// The native path of what is there; empty when there is nothing.
  std::function<std::string(const Path& path)> to_native;
};

}  // namespace tarnvale
