// Moving the bytes of one open file into another.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

namespace tarnvale {

/// Copies everything of a plain file that is open at its beginning into an
/// empty one. Lets the file system share the blocks where it can; leaves holes
/// as holes. `info` is the source's. Raises 61, 57 or what else went wrong.
void CopyData(int source, int target, const struct stat& info);

/// Copies up to `most` bytes from the position of one open file to that of
/// another, by the kernel as far as it is able to. Returns how many: fewer only
/// at the end of the source. Raises as CopyData does.
off_t CopyRange(int source, int target, off_t most);

}  // namespace tarnvale
