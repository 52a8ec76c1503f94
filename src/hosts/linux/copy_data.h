// Moving the bytes of one open file into another.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

namespace tarnvale {

/// Copies everything of a plain file into an empty one. Lets the file system share the blocks where
/// it can; leaves holes as holes. `info` is the source's. Raises 61, 57 or what else went wrong.
void CopyData(int source, int target, const struct stat& info);

struct CopiedRange {
  off_t from = 0;  ///< where it begins in the source
  off_t to = 0;    ///< and in the target
  off_t bytes = 0;
};

/// Copies up to `range.bytes` from one open file to another, by the kernel as far as it is
/// able to. Returns how many: fewer only at the end of the source. Uses the positions of
/// neither file. Raises as CopyData does.
off_t CopyRange(int source, int target, CopiedRange range);

}  // namespace tarnvale
