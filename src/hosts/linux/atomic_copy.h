// Copying one file or link so that its target changes in one step.
#pragma once

#include <sys/stat.h>

#include <string>

#include "hosts/linux/descriptor.h"
#include "hosts/linux/replacement.h"
#include "hosts/linux/temporaries.h"
#include "platform/files.h"

namespace tarnvale {

/// Where a copy comes from or goes to: a path relative to an open folder, or, of a
/// source only, an absolute one with AT_FDCWD.
struct NativeSpot {
  int folder_fd;
  const char* path;
};

/// Whether a copy is one of what a link leads to.
enum class Links { kFollow, kKeep };

struct CopyManner {
  Links links;
  Rights rights;
  Flush flush = Flush::kNo;
};

/// Where a copy goes to.
struct CopyTarget {
  NativeSpot spot;
  /// The native folder that it lies in, absolute.
  const std::string& folder;
  /// Nothing has this name yet, as far as is known.
  bool is_new = false;
  /// What has come or changed since, when the copy is whole, stays: the copy fails with 58.
  bool only_as_seen = false;
  struct stat seen {};  ///< of a target that isn't new
};

/// Whether a copy from something with the properties `source` may replace what
/// is at its target. Raises 75 for a folder, a device, a socket, a pipe and
/// a read-only file, but 58 for a link in whose place is a folder. False when both
/// are one and the same file, so that there is nothing to do.
bool MayReplace(const struct stat& source, const struct stat& target);

/// Whether anything has the name of a target, links not followed. Raises 57, 70, 75 when
/// that can't be looked at: what is there may be closed, or another file's by its case.
bool IsThere(NativeSpot target, struct stat& info);

/// Copies the extended attributes that go with a copy: what the target's medium
/// can't hold is left out, and so are access lists unless `rights` lets them through.
void CopyExtendedAttributes(int source_fd, int target_fd, Rights rights);

class AtomicCopy {
 public:
  explicit AtomicCopy(Temporaries& temporaries) : slot_(temporaries) {}

  /// Copies a plain file with modification time, permissions and extended
  /// attributes, replacing what is there unasked. Returns the state of the source as
  /// it was before anything of it was read. Raises 53 (no source), 61, 70,
  /// 57, and 75 for a link that is to be kept; the target is then as it was.
  struct stat CopyFile(NativeSpot source, CopyManner manner, const CopyTarget& target);

  /// Gives a target that has the bytes of a plain file already, and a time so near that a
  /// medium with coarse times may have made the difference, that file's time. False, and
  /// nothing has happened, where there is a copy to make.
  static bool TakeTime(NativeSpot source, Rights rights, const CopyTarget& target);

  /// Copies a symbolic link; `info` is its own. False on a medium that can't hold links:
  /// nothing has happened.
  bool CopyLink(NativeSpot source, const struct stat& info, const CopyTarget& target);

 private:
  struct Source {
    Descriptor file;
    struct stat info {};
    Rights rights = Rights::kOwner;  ///< of the copy
    mode_t allowed = 0777;           ///< of the permissions, by the file that is replaced
    Flush flush = Flush::kNo;        ///< of the copy
  };

  static mode_t CreationMode(const Source& source);
  static void CopyProperties(const Source& source, int target);
  static void CopyInto(const Source& source, int target);

  static bool CopyNameless(const Source& source, const CopyTarget& target);
  void CopyNamed(const Source& source, const CopyTarget& target);

  TemporarySlot slot_;
};

}  // namespace tarnvale
