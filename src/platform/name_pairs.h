// Which names of two folders belong together.
#pragma once

#include <cstddef>
#include <functional>
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
};

using FoldCaseFunction = std::function<std::string(std::string_view)>;

/// Equal names belong together. A name in the other case stands for one only where
/// neither folder has the exact one, and for one only: the first in order. So no
/// two names have the same partner, and what is left over needs a name of its own.
NamePairs PairNames(const FolderContents& first, const FolderContents& second,
                    const FoldCaseFunction& fold);

}  // namespace tarnvale
