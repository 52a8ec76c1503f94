// Which names of two folders belong together.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace tarnvale {

/// For each file and each folder of a first folder, the place of its partner in the
/// second one's list of the same kind; kNone where it has none.
struct NamePairs {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::vector<std::size_t> files;
  std::vector<std::size_t> folders;
  /// Some partners have another name.
  bool has_variants = false;
};

/// When names that differ are one and the same.
struct NameRules {
  std::function<std::string(std::string_view)> fold;
  /// What each folder's medium finds by a name, as HeldFolder::FoundBy; may be empty.
  using Find = std::function<std::optional<std::size_t>(const std::string&, const ListedNames&)>;
  Find in_first;
  Find in_second;
};

/// Those of two folders that are held; null for one that has no medium. Both must live
/// as long.
NameRules NameRulesOf(FileSystem& files, HeldFolder* first, HeldFolder* second);

/// Equal names belong together. A name in the other case, or one that the medium takes
/// for it all the same, stands for it only where neither folder has the exact one, and
/// for one only: the first in order. So no two names have the same partner, and what is
/// left over needs a name of its own.
NamePairs PairNames(const FolderContents& first, const FolderContents& second,
                    const NameRules& rules);

/// Those pairs of `first` where `others` go to the second folder as well: their names
/// count as the first's.
NamePairs PairNamesAmong(const FolderContents& first, const std::vector<FolderContents>& others,
                         const FolderContents& second, const NameRules& rules);

}  // namespace tarnvale
