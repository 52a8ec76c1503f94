// Making an archive.
#pragma once

#include <string>
#include <vector>

#include "tvz/progress.h"

namespace tarnvale {

/// Packs what lies below a folder into `archive`, byte for byte as the program
/// does. Native paths. The archive gets its name when it is whole; a link to an
/// old one is followed. Returns the native paths that were left out as no path
/// of the program can name them. Raises CommandFailure, and UsageError when the
/// archive would lie in the folder.
std::vector<std::string> PackFolder(const std::string& archive, const std::string& folder,
                                    Progress& progress);

}  // namespace tarnvale
