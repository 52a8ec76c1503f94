// Writing entries below a folder, and nowhere else.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "codec/container.h"
#include "native/command_failure.h"
#include "native/output_folder.h"

namespace tarnvale {

/// An entry that can't be written here for its name: no file can have it, or the medium
/// doesn't distinguish it from that of another one.
class LeftOutEntry : public CommandFailure {
 public:
  using CommandFailure::CommandFailure;
};

/// The folder that an archive is unpacked to. All raise CommandFailure.
class TargetFolder {
 public:
  /// `folder`: a native path; nothing needs to be there yet. With
  /// `allow_outside`, names and links are followed wherever they lead, and a name
  /// with a drive or a backslash at its start is a path of the whole system.
  TargetFolder(std::string folder, bool allow_outside);

  /// Whether an entry of this name may be written, as things stand. Writes
  /// nothing.
  void Check(const std::string& name);

  /// Makes the folder itself.
  void Make();

  /// Writes one entry, making its folders. The file gets its name when it is
  /// whole, and takes the place of an old one or of a link. Raises LeftOutEntry, and
  /// writes nothing, for one that has no name here of its own.
  void Write(const ContainerRecord& record);

 private:
  struct Place {
    std::string root;  ///< native; empty for the folder itself
    std::vector<std::string> folders;
    std::string file;
  };

  Place PlaceOf(const std::string& name) const;
  static bool IsNameless(const Place& place);
  std::optional<OutputFolder> OpenFolder(const std::string& name, const Place& place, bool make);
  /// What was written or entered, and under which name.
  struct Named {
    std::string path;
    std::string name;
  };
  using Names = std::map<FileIdentity, Named>;
  static void RequireNoTwin(const Names& names, const FileIdentity& there, const std::string& name,
                            const std::string& entry);

  std::optional<OutputFolder> Enter(const OutputFolder& folder, const std::string& name,
                                    bool make) const;

  std::string folder_;
  bool allow_outside_;
  std::optional<OutputFolder> opened_;
  // The folder of the last entry: neighbours share it.
  std::vector<std::string> last_folders_;
  std::optional<OutputFolder> last_;
  Names files_;
  Names folders_;
};

}  // namespace tarnvale
