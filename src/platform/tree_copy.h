// The copy of a whole folder, for hosts that hold folders without cost.
#pragma once

#include <functional>

#include "platform/files.h"

namespace tarnvale {

/// Copies what `source` holds into `target`, as FileSystem::CopyTree does. The folders
/// on the way to the present one are held, so a tree is as deep as paths may be.
/// `folder_done` is called for each folder that was made, when all that is in it has
/// been copied. Raises the first failure at the end.
void CopyContents(FileSystem& files, HeldFolder& source, HeldFolder& target, Rights rights,
                  const LeftOutFolders& left_out, const std::function<void()>& between,
                  const std::function<void(HeldFolder& from, HeldFolder& made)>& folder_done);

}  // namespace tarnvale
