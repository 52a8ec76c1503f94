// Making an archive.
#pragma once

#include <string>
#include <vector>

#include "tvz/progress.h"
#include "tvz/tree_check.h"

namespace tarnvale {

/// Packs what lies below a folder into `archive`, byte for byte as the program
/// does. Native paths. The archive gets its name when it is whole; a link to an
/// old one is followed. Returns what was left out by its name. Raises CommandFailure, and
/// UsageError when the archive would lie in the folder.
std::vector<LeftOut> PackFolder(const std::string& archive, const std::string& folder,
                                Progress& progress);

}  // namespace tarnvale
