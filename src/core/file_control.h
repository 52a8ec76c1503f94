// A test for a file, and a folder copy that can ask before replacing.
#pragma once

#include "ui/machine.h"

namespace tarnvale {

class FileControl {
 public:
  explicit FileControl(Machine& machine) : machine_(machine) {}

  /// True if the path names a file of at least one byte. A missing file, a
  /// folder and an empty file give false; raises nothing.
  bool FileExists(const Path& path);

  struct CopyOptions {
    bool move = false;
    bool overwrite = false;
    Rights rights = Rights::kNewFile;  ///< of what a copy makes
  };

  /// Copies a folder with all that is in it, merging into a folder that is
  /// there; yields after each file. Or moves it, which fails where the
  /// destination exists, and doesn't yield. Asks first, which yields, when the
  /// destination is a file of at least one byte and `overwrite` is off. False
  /// when a failure was trapped; true otherwise, also when the user refused.
  bool CopyFolderTo(const Path& source, const Path& destination, CopyOptions options);

 private:
  bool MayReplace(const Path& destination, bool overwrite);

  Machine& machine_;
};

}  // namespace tarnvale
