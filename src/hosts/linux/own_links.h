// Following the links of a path, as long as nobody else made them.
//
// Whoever can write to a folder can put a link there in place of a file that the
// program reads or writes, or of a folder on the way to it. The kernel's own
// protection holds in sticky folders only, so a link is followed only if this user
// or the administrator owns it, and not on a medium where anybody can have written that;
// so is each link that it leads to.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <string>

#include "hosts/linux/descriptor.h"

namespace tarnvale {

/// Opens as openat does. None when that fails, with `errno` set: EACCES for a
/// link that isn't followed.
Descriptor OpenByOwnLinks(int folder_fd, std::string path, int flags, mode_t mode = 0);

/// Reads the state of what a path leads to, and makes `path` the path of that.
/// False when it fails, likewise: ENOENT when nothing is there.
bool GoByOwnLinks(int folder_fd, std::string& path, struct stat& info);

inline bool StateByOwnLinks(int folder_fd, std::string path, struct stat& info) {
  return GoByOwnLinks(folder_fd, path, info);
}

}  // namespace tarnvale
