// Reading the names in a folder.
#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <memory>
#include <string>
#include <string_view>

#include "hosts/linux/descriptor.h"
#include "hosts/linux/temporaries.h"

namespace tarnvale {

/// Goes through a folder, leaving out ".", ".." and temporaries (leftovers of
/// ours are deleted on the way) and what no path can name.
class FolderScan {
 public:
  /// Takes an open folder. Raises 75 when it can't be read.
  FolderScan(Descriptor folder, const Temporaries& temporaries);

  /// The next entry, null at the end. It is good until the next call. Raises 57
  /// or 75 when reading fails.
  const dirent* Next();

  int Fd() const { return ::dirfd(folder_.get()); }

  /// True when an entry so far was left out because no path can name it.
  bool LeftOutFolders() const { return left_out_; }

 private:
  std::unique_ptr<DIR, int (*)(DIR*)> folder_;
  const Temporaries& temporaries_;
  bool left_out_ = false;
};

/// Deletes the leftovers of ours in a native folder. One that can't be read keeps them.
void SweepFolder(const std::string& folder, const Temporaries& temporaries);

enum class FolderUse {
  kRead = O_RDONLY,
  kEnter = O_PATH,  ///< only for what it holds: it need not be readable
};

/// Opens a native folder. Raises 76 when it is none or isn't there,
/// and for a link to one unless `follow`; 75 when it can't be read or is reached by
/// a link of somebody else.
Descriptor OpenNativeFolder(const std::string& folder, bool follow,
                            FolderUse use = FolderUse::kRead);

/// Opens a folder within an open one; `names` leads there, with slashes
/// between, and may be empty for that very folder. Links aren't followed, and "."
/// and ".." not taken. Raises 76, also for names too long for a path; 75.
Descriptor OpenInnerFolder(int folder_fd, std::string_view names, FolderUse use = FolderUse::kRead);

}  // namespace tarnvale
