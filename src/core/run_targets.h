// The names that a run's copies have in the storage location.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/file_sync.h"
#include "platform/files.h"

namespace tarnvale {

/// A whole-folder item of a run.
struct RunFolder {
  Path source;
  std::string name;     ///< in the storage location
  std::string of_item;  ///< the same as its item is written, which is taken as well
};

/// Pairs the names that a run copies to with those that the storage location holds,
/// and holds that folder. A name in the other case stands for one of the run's only
/// where neither the run nor the location has the exact one, and for one only: so no
/// two items go to one copy because of the case of their names.
class RunTargets {
 public:
  explicit RunTargets(FileSystem& files) : files_(files) {}

  /// Begins a run that copies files and folders to these names. `all_in_one`: what the
  /// folders hold goes to the location itself.
  void Begin(std::vector<std::string> file_names, std::vector<RunFolder> folders, bool all_in_one);
  void End();

  /// What else the run copies to the folder of this name, or to the location itself when
  /// it is empty, beside one of its folders.
  Companions CompanionsOf(const Path& source, const std::string& name) const;

  /// Where a file, a folder with this name goes in `location`; none when that can't
  /// be opened. Good until the next call.
  std::optional<HeldEntry> FileIn(const Path& location, const std::string& name);
  std::optional<HeldEntry> FolderIn(const Path& location, const std::string& name);

 private:
  using RealNames = std::unordered_map<std::string, std::string>;

  bool Open(const Path& location);
  std::vector<FolderContents> ContentsOfFolders();
  HeldEntry EntryFor(const RealNames& names, const std::string& name) const;

  FileSystem& files_;
  FolderContents wanted_;
  std::vector<RunFolder> folders_;
  bool all_in_one_ = false;
  Path location_;
  std::unique_ptr<HeldFolder> folder_;
  RealNames file_names_;
  RealNames folder_names_;
};

}  // namespace tarnvale
