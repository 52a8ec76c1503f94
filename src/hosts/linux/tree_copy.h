// Copying and removing whole folders.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "hosts/linux/atomic_copy.h"
#include "hosts/linux/folder_scan.h"
#include "platform/name_pairs.h"

namespace tarnvale {

/// The folder that a tree is copied to, there or not.
struct TreeTarget {
  int parent_fd;
  std::string parent;  ///< its native path
  std::string name;    ///< empty for the open folder itself
  /// Nothing has exactly this name yet. What is found by it all the same is another one.
  bool is_new = false;
  Flush flush = Flush::kNo;  ///< of each file
};

/// One copy of a folder with all that is in it. What fails is noted and the
/// rest goes on.
class TreeCopy {
 public:
  /// `rights`: of what is made. `between` is called after each file; anything may
  /// happen in it. Folders in `left_out` aren't entered.
  TreeCopy(Temporaries& temporaries, Rights rights, const std::function<void()>& between,
           const LeftOutFolders& left_out = {});

  /// Copies an open folder to `target` below another one, which is made if it isn't
  /// there. Devices, sockets, pipes and what no path can name are passed over. Both
  /// stay the folders that they are now, and no link is followed. Raises the first
  /// failure at the end.
  void Run(int source_fd, const TreeTarget& target);

  /// True when nothing was passed over.
  bool CopiedAll() const { return copied_all_; }

 private:
  /// A folder that is being filled.
  struct TargetFolder {
    std::string path;  ///< native, absolute
    Descriptor fd;
    bool was_made = false;
    FolderContents names;  ///< what it held before; what is no folder counts as a file
  };
  struct SubFolder {
    std::string source;
    std::string target;
    bool is_new = false;  ///< as in TreeTarget
  };
  /// A folder whose files are copied, and the folders in it that are still to come.
  /// Both paths count from the roots of the copy.
  struct Level {
    std::string source;
    std::string target;
    std::vector<SubFolder> folders;
    std::size_t next = 0;
    bool was_made = false;
    struct stat info {};
  };

  void CopyFolder(const std::string& source, const std::string& target, bool is_new);
  FolderContents ReadSource(FolderScan& scan);
  TargetFolder OpenTarget(const std::string& path, bool is_new, int source_fd,
                          const struct stat& source);
  void CopyFiles(int source_fd, const FolderContents& source, const TargetFolder& target,
                 const NamePairs& pairs);
  void CopyOne(int source_fd, const std::string& name, const TargetFolder& target,
               const std::string& target_name, bool is_paired);
  void KeepFolderTime(const Level& level) const;
  bool IsLeftOut(const struct stat& folder) const;
  template <class Step>
  void Try(Step&& step);

  Temporaries& temporaries_;
  AtomicCopy copy_;
  const Rights rights_;
  const std::function<void()>& between_;
  int source_fd_ = -1;
  int target_fd_ = -1;
  std::string target_path_;
  Flush flush_ = Flush::kNo;
  std::vector<Level> levels_;
  std::optional<ProgramError> first_failure_;
  std::vector<std::pair<dev_t, ino_t>> left_out_;
  bool has_target_root_ = false;  ///< among `left_out_`
  bool copied_all_ = true;
};

/// Deletes all that is in an open folder. Links are deleted, not followed. Stops and
/// raises 70, 75 or 57 at the first that can't be deleted.
void EmptyFolder(const Descriptor& folder);

}  // namespace tarnvale
