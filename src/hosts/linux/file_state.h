// What two looks at files say of them.
#pragma once

#include <sys/stat.h>

namespace tarnvale {

inline bool AreOneFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

inline bool AreOneTime(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

/// Whether a file's state is one and the same: nothing of it has changed in between.
inline bool SameState(const struct stat& a, const struct stat& b) {
  return AreOneFile(a, b) && a.st_size == b.st_size && AreOneTime(a.st_mtim, b.st_mtim) &&
         AreOneTime(a.st_ctim, b.st_ctim);
}

/// The attribute, which stops the program, as permissions don't stop root.
inline bool IsReadOnly(const struct stat& info) {
  return (info.st_mode & S_IWUSR) == 0;
}

}  // namespace tarnvale
