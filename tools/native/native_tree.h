// The folders and files of a tree that is to be packed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

struct TreeEntry {
  std::string path;  ///< native
  std::string name;
  bool is_folder = false;
  /// Why packing leaves it out and says so; none for what it takes.
  const char* left_out = nullptr;
};

/// What a native folder holds, in any order, without what packing doesn't see: hidden
/// entries, devices, links that lead nowhere. A link to a folder isn't entered, one to a
/// file is taken. Raises CommandFailure.
std::vector<TreeEntry> EntriesOf(const std::string& folder);

/// The size of a file that packing takes; none for one that has gone meanwhile. Raises
/// CommandFailure, also for one that can't be read.
std::optional<std::int64_t> SizeOfPacked(const std::string& file);

}  // namespace tarnvale
