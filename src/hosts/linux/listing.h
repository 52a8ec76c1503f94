// Listings of folders.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/linux/folder_scan.h"
#include "platform/files.h"

namespace tarnvale {

FolderEntry EntryOf(std::string name, const struct stat& info);

/// The contents of an open native folder. Raises 75, 57.
FolderContents ReadContents(Descriptor folder, const Temporaries& temporaries);

/// The names alone, without a question for each. What is no folder counts as a file.
FolderContents ReadNames(Descriptor folder, const Temporaries& temporaries);

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
