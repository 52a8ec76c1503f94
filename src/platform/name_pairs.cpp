#include "platform/name_pairs.h"

#include <unordered_map>
#include <unordered_set>

namespace tarnvale {
namespace {

using Names = std::vector<std::string_view>;
using NameSet = std::unordered_set<std::string_view>;

struct Side {
  explicit Side(const FolderContents& contents)
      : folders(contents.folders.begin(), contents.folders.end()) {
    files.reserve(contents.files.size());
    for (const FolderEntry& file : contents.files) files.push_back(file.name);
    all.insert(files.begin(), files.end());
    all.insert(folders.begin(), folders.end());
  }

  Names files;
  Names folders;
  NameSet all;
};

std::vector<std::size_t> PairKind(const Names& first, const NameSet& in_first, const Names& second,
                                  const NameSet& in_second, const FoldCaseFunction& fold) {
  std::unordered_map<std::string_view, std::size_t> exact;
  // Names of the second alone, the first in order last.
  std::unordered_map<std::string, std::vector<std::size_t>> variants;
  for (std::size_t i = second.size(); i-- > 0;) {
    exact.emplace(second[i], i);
    if (!in_first.contains(second[i])) variants[fold(second[i])].push_back(i);
  }
  std::vector<std::size_t> partners(first.size(), NamePairs::kNone);
  for (std::size_t i = 0; i < first.size(); ++i) {
    if (in_second.contains(first[i])) {
      const auto found = exact.find(first[i]);
      if (found != exact.end()) partners[i] = found->second;
    } else if (!variants.empty()) {
      const auto found = variants.find(fold(first[i]));
      if (found == variants.end() || found->second.empty()) continue;
      partners[i] = found->second.back();
      found->second.pop_back();
    }
  }
  return partners;
}

}  // namespace

NamePairs PairNames(const FolderContents& first, const FolderContents& second,
                    const FoldCaseFunction& fold) {
  const Side a(first);
  const Side b(second);
  return {PairKind(a.files, a.all, b.files, b.all, fold),
          PairKind(a.folders, a.all, b.folders, b.all, fold)};
}

}  // namespace tarnvale
