// Copying and removing whole folders.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "platform/linux/atomic_copy.h"
#include "platform/linux/folder_scan.h"

namespace tarnvale {

/// One copy of a folder with all that is in it. What fails is noted and the
/// rest goes on.
class TreeCopy {
 public:
  /// `between` is called after each file; anything may happen in it.
  TreeCopy(Temporaries& temporaries, const std::function<void()>& between);

  /// Both are native folders, no links; `target` is made if it isn't there.
  /// Devices, sockets, pipes and what no path can name are passed over. Raises
  /// the first failure at the end.
  void Run(const std::string& source, const std::string& target);

  /// True when nothing was passed over.
  bool CopiedAll() const { return copied_all_; }

 private:
  struct SourceFile {
    std::string name;
    bool is_link = false;
  };
  struct SourceNames {
    std::vector<SourceFile> files;
    std::vector<std::string> folders;
    std::unordered_set<std::string> all;
  };
  /// What the target folder held before; nothing when it was just made.
  struct TargetNames {
    std::unordered_set<std::string> all;
    std::unordered_map<std::string, std::string> by_folded;
  };
  /// A folder that is being filled.
  struct TargetFolder {
    const std::string& path;
    Descriptor fd;
    bool was_made = false;
    TargetNames names;
  };

  void CopyFolder(const std::string& source, const std::string& target);
  SourceNames ReadSource(FolderScan& scan);
  TargetFolder OpenTarget(const std::string& path, int source_fd, const struct stat& source);
  void ReadTarget(TargetFolder& target);
  static std::string TargetNameOf(const std::string& name, const SourceNames& source,
                                  const TargetFolder& target);
  void CopyFiles(int source_fd, const SourceNames& source, const TargetFolder& target);
  void CopyOne(int source_fd, const SourceFile& file, const TargetFolder& target,
               const std::string& target_name);
  bool IsTargetRoot(const struct stat& folder) const;
  template <class Step>
  void Try(Step&& step);

  Temporaries& temporaries_;
  AtomicCopy copy_;
  const std::function<void()>& between_;
  std::optional<ProgramError> first_failure_;
  std::optional<std::pair<dev_t, ino_t>> target_root_;
  bool copied_all_ = true;
};

/// Deletes a native folder with all that is in it. Links are deleted, not
/// followed. Stops and raises 70, 75 or 57 at the first that can't be deleted.
void RemoveTree(const std::string& folder);

}  // namespace tarnvale
