// Writing entries below a folder, and nowhere else.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "codec/container.h"
#include "hosts/linux/descriptor.h"
#include "tvz/command_failure.h"

namespace tarnvale {

/// An entry whose name the medium doesn't tell from that of another one.
class Twin : public CommandFailure {
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
  /// whole, and takes the place of an old one or of a link. Raises Twin, and writes
  /// nothing, where it would take that of another entry.
  void Write(const ContainerRecord& record);

 private:
  struct Place {
    bool from_root = false;
    std::vector<std::string> folders;
    std::string file;
  };

  Place PlaceOf(const std::string& name) const;
  std::optional<Descriptor> OpenFolder(const std::string& name, const Place& place, bool make);
  /// What was written or entered, and under which name.
  struct Named {
    std::string path;
    std::string name;
  };
  using Names = std::map<std::pair<dev_t, ino_t>, Named>;
  static void RequireNoTwin(const Names& names, const struct stat& there, const std::string& name,
                            const std::string& entry);

  std::optional<Descriptor> Enter(int folder_fd, const std::string& folder, const std::string& name,
                                  bool make) const;
  void OpenItself();
  bool IsInside(int folder_fd) const;

  std::string folder_;
  bool allow_outside_;
  Descriptor opened_;
  std::string real_path_;  // of `opened_`
  std::string work_name_;
  // The folder of the last entry: neighbours share it.
  std::vector<std::string> last_folders_;
  Descriptor last_;
  Names files_;
  Names folders_;
};

}  // namespace tarnvale
