// A file that takes another one's place in one step.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <string>
#include <string_view>

#include "hosts/linux/descriptor.h"
#include "hosts/linux/temporaries.h"

namespace tarnvale {

/// Makes a file for reading and writing, nothing else than a fresh one: a leftover of that
/// name is deleted first, a link not followed. `name` counts from the open
/// folder, or is a path and `folder_fd` AT_FDCWD. None when that fails, with
/// `errno` set.
Descriptor CreateFresh(int folder_fd, const char* name, mode_t mode);

/// Whether what was written has reached the medium before it gets its name.
enum class Flush { kNo, kYes };

/// Puts the names in the folder of `path` onto the medium. Some can't do that; the files
/// themselves are safe all the same.
void FlushFolder(int folder_fd, const std::string& path);

/// Written under a temporary name beside its target and deleted unless it is committed.
class Replacement {
 public:
  /// `folder` is native and absolute. `folder_fd` holds it, for as long as this object
  /// lives, or is AT_FDCWD: then all paths are absolute. Makes nothing yet.
  Replacement(TemporarySlot& slot, std::string_view folder, int folder_fd = AT_FDCWD);
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;
  ~Replacement();

  /// Both false when that fails, with `errno` set.
  bool Create(mode_t mode);
  bool CreateLink(const char* leads_to);

  int Fd() const { return file_.Get(); }
  /// The temporary, from the folder or absolute.
  const char* Path() const { return path_.c_str(); }

  /// Ends the writing. False when something got lost, with `errno` set.
  bool Close(Flush flush);

  /// Closes it and gives it its target's name. Raises 57, 61, 70, 75.
  void Commit(const std::string& target, Flush flush = Flush::kNo);
  /// Likewise, where nothing has the name, and over what still is as `seen`. Raise 58
  /// where something has come or changed since, which then stays.
  void CommitNew(const std::string& target);
  void CommitOver(const std::string& target, const struct stat& seen);

 private:
  bool Rename(const std::string& target, unsigned flags);
  void RequireAsSeen(const char* name, const struct stat& seen) const;

  TemporarySlot& slot_;
  int folder_fd_;
  std::string path_;
  Descriptor file_;
  bool is_in_place_ = false;
};

}  // namespace tarnvale
