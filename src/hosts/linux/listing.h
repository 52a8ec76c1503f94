// Listings of folders.
#pragma once

#include <cstddef>
#include <optional>
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

/// The names alone, without a question for each. What is no folder counts as a file.
FolderContents ReadNames(Descriptor folder, const Temporaries& temporaries);

/// Puts both lists in the order of listings.
void SortContents(FolderContents& contents);

/// Whether contents in the order of listings have exactly this name.
bool Holds(const FolderContents& contents, std::string_view name);

/// As HeldFolder::FoundBy, in an open folder.
std::optional<std::size_t> FoundBy(int folder_fd, const std::string& name,
                                   const ListedNames& listed);

/// Names of the files in an open folder that match, in order. Links count as
/// what they lead to.
std::vector<std::string> ListFiles(Descriptor folder, std::string_view pattern, ListKinds kinds,
                                   const Temporaries& temporaries);

/// Names of the real folders in an open folder, in order.
std::vector<std::string> ListSubFolders(Descriptor folder, ListKinds kinds,
                                        const Temporaries& temporaries);

}  // namespace tarnvale
