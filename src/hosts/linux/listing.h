// Listings of folders.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "hosts/linux/folder_scan.h"
#include "platform/files.h"

namespace tarnvale {

/// "*" any run, "?" any one character, "*.*" everything, an empty pattern too;
/// without regard to case.
bool MatchesPattern(std::string_view name, std::string_view pattern);

/// The contents of an open native folder. Raises 75, 57.
FolderContents ReadContents(Descriptor folder, const Temporaries& temporaries);

/// Puts both lists in the order of listings.
void SortContents(FolderContents& contents);

/// Names of the files in an open folder that match, in order. Links count as
/// what they lead to.
std::vector<std::string> ListFiles(Descriptor folder, std::string_view pattern, ListKinds kinds,
                                   const Temporaries& temporaries);

/// Names of the real folders in an open folder, in order.
std::vector<std::string> ListSubFolders(Descriptor folder, ListKinds kinds,
                                        const Temporaries& temporaries);

}  // namespace tarnvale
