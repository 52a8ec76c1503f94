// The names under which an archive's files are written.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/files.h"

namespace tarnvale {

/// An entry goes to the file of exactly its name. One in the other case stands for it
/// only where neither the archive nor the target folder has the exact one, and for one
/// entry only; so does one that the medium takes for it. No two entries are written to
/// one file because their names are alike.
class ExtractionNames {
 public:
  /// `target_folder` ends in a backslash. `read_names` reads all names of the archive;
  /// it is called once at most, and only when a case is in question.
  ExtractionNames(FileSystem& files, Path target_folder,
                  std::function<std::vector<std::string>()> read_names)
      : files_(files), target_(std::move(target_folder)), read_names_(std::move(read_names)) {}

  /// The path for an entry; the folders up to it are made. None where the medium
  /// doesn't distinguish it from another one, which is to stay. Names that lead upwards or
  /// hold empty parts are taken as they stand. Raises 76, 75, 70.
  std::optional<Path> PathOf(const std::string& entry);

  /// Makes an empty file at the last path, if nothing was there. Nobody has to go through
  /// the whole folder then for one of another case. Leaves failures to the writer.
  void MakeNewFile();

 private:
  /// One folder of the archive in the target.
  struct Place {
    Path path;             ///< with a backslash at its end
    FolderContents there;  ///< what it held at first
    ListedNames names;     ///< its files, its folders, and what was made since
    std::unordered_map<std::string, std::string> given;     ///< real names by those of entries
    std::set<std::string> taken;                            ///< values of `given`
    std::set<std::string> real;                             ///< all that is there by now
    std::set<std::string> folded;                           ///< the same, folded
    std::map<std::string, std::vector<std::string>> files;  ///< variants by folded name
    std::map<std::string, std::vector<std::string>> folders;
  };
  enum class Kind { kFile, kFolder };

  Place* PlaceAt(const std::string& folder, const Path& path);
  std::optional<std::string> NameIn(Place& place, const std::string& folder,
                                    const std::string& name, Kind kind);
  bool ArchiveHas(const std::string& folder, const std::string& name);
  bool Make(const Path& folder, const std::string& name, Kind kind);
  HeldFolder& Held(const Path& folder);
  std::optional<std::size_t> FoundBy(const Place& place, const std::string& name);

  FileSystem& files_;
  Path target_;
  std::function<std::vector<std::string>()> read_names_;
  std::optional<std::vector<std::string>> archive_;  ///< all entries, sorted
  std::map<std::string, Place> places_;
  struct NewFile {
    Path folder;
    std::string name;
  };
  std::optional<NewFile> new_file_;
  Path held_path_;  ///< of the folder that was looked at last
  std::unique_ptr<HeldFolder> held_;
};

}  // namespace tarnvale
