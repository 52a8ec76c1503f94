// The pointer file "Data.txt", which names the folder that holds the person's data.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/files.h"
#include "platform/open_files.h"

namespace tarnvale {

struct PointerPlace {
  FileSystem& files;
  OpenFiles& open_files;
  /// Of this program; without a backslash at its end.
  Path program_folder;
  /// What the launcher of a device says; none without one.
  std::optional<Path> device_folder;
  /// Writes a file in one step. Raises what a host does.
  std::function<void(const Path& file, const std::string& bytes)> replace;
};

/// Leaves a pointer file that names a folder that exists: the device's where there is
/// one; otherwise the one that it names already; otherwise "Data" in the program's folder.
/// The folder is made when it is missing. A pointer file that needs no change isn't
/// touched. Raises when that can't be done.
void LeavePointer(const PointerPlace& place);

}  // namespace tarnvale
