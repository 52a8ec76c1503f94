// A test for a file, and a folder copy that can ask before replacing.
#pragma once

#include "platform/files.h"
#include "ui/event_loop.h"
#include "ui/message_boxes.h"

namespace tarnvale {

class FileControl {
 public:
  FileControl(FileSystem& files, MessageBoxes& boxes, EventLoop& loop)
      : files_(files), boxes_(boxes), loop_(loop) {}

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

  FileSystem& files_;
  MessageBoxes& boxes_;
  EventLoop& loop_;
};

}  // namespace tarnvale
