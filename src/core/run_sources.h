// The files and folders that a run copies.
#pragma once

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/files.h"

namespace tarnvale {

/// Two items of a run whose paths differ in case only are two. When one of them has
/// gone, the other doesn't stand for it: it would replace the one copy that is left.
class RunSources {
 public:
  explicit RunSources(FileSystem& files) : files_(files) {}

  /// Begins a run of these paths.
  void Begin(const std::vector<Path>& paths);
  void End();

  /// The path itself. Raises 53 when another one of the run differs in case only and
  /// nothing is there by exactly this name; 76, 75 when its folder can't be read.
  const Path& At(const Path& path);

  /// The name that it has there, which may be that of its path in another case. Of a
  /// missing one that of its path.
  std::string NameOf(const Path& path);

 private:
  FileSystem& files_;
  std::unordered_set<Path> twins_;
  Path folder_path_;  ///< of the folder looked at last
  std::unique_ptr<HeldFolder> folder_;
};

}  // namespace tarnvale
