// Moving the bytes of one open file into another.
#pragma once

#include <sys/stat.h>

namespace tarnvale {

/// Copies everything of a plain file that is open at its beginning into an
/// empty one. Lets the file system share the blocks where it can; leaves holes
/// as holes. `info` is the source's. Raises 61, 57 or what else went wrong.
void CopyData(int source, int target, const struct stat& info);

}  // namespace tarnvale
