// The names that a run's copies have in the storage location.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/files.h"

namespace tarnvale {

/// Pairs the names that a run copies to with those that the storage location holds,
/// and holds that folder. A name in the other case stands for one of the run's only
/// where neither the run nor the location has the exact one, and for one only: so no
/// two items go to one copy because of the case of their names.
class RunTargets {
 public:
  explicit RunTargets(FileSystem& files) : files_(files) {}

  /// Begins a run that copies files and folders to these names.
  void Begin(std::vector<std::string> file_names, std::vector<std::string> folder_names);
  void End();

  /// Where a file, a folder with this name goes in `location`; none when that can't
  /// be opened. Good until the next call.
  std::optional<HeldEntry> FileIn(const Path& location, const std::string& name);
  std::optional<HeldEntry> FolderIn(const Path& location, const std::string& name);

 private:
  using RealNames = std::unordered_map<std::string, std::string>;

  bool Open(const Path& location);
  HeldEntry EntryFor(const RealNames& names, const std::string& name) const;

  FileSystem& files_;
  FolderContents wanted_;
  Path location_;
  std::unique_ptr<HeldFolder> folder_;
  RealNames file_names_;
  RealNames folder_names_;
};

}  // namespace tarnvale
