#include "platform/name_pairs.h"

#include <map>
#include <unordered_map>
#include <unordered_set>

namespace tarnvale {
namespace {

using Names = std::vector<std::string_view>;
using NameSet = std::unordered_set<std::string_view>;
constexpr std::size_t kNone = NamePairs::kNone;

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

// The names of one kind in both folders.
struct Kind {
  const Names& first;
  const NameSet& in_first;
  const Names& second;
  const NameSet& in_second;
};

std::vector<std::size_t> PairByName(const Kind& kind, const NameRules& rules, bool& has_variants) {
  std::unordered_map<std::string_view, std::size_t> exact;
  // Names of the second alone, the first in order last.
  std::unordered_map<std::string, std::vector<std::size_t>> variants;
  for (std::size_t i = kind.second.size(); i-- > 0;) {
    exact.emplace(kind.second[i], i);
    if (!kind.in_first.contains(kind.second[i])) {
      variants[rules.fold(kind.second[i])].push_back(i);
    }
  }
  std::vector<std::size_t> partners(kind.first.size(), kNone);
  for (std::size_t i = 0; i < kind.first.size(); ++i) {
    if (kind.in_second.contains(kind.first[i])) {
      const auto found = exact.find(kind.first[i]);
      if (found != exact.end()) partners[i] = found->second;
    } else if (!variants.empty()) {
      const auto found = variants.find(rules.fold(kind.first[i]));
      if (found == variants.end() || found->second.empty()) continue;
      partners[i] = found->second.back();
      found->second.pop_back();
      has_variants = true;
    }
  }
  return partners;
}

// Names that are in no pair and that the other folder has in no kind, by their places.
std::vector<std::size_t> Lone(const Names& names, const NameSet& in_other,
                              const std::vector<bool>& is_paired) {
  std::vector<std::size_t> lone;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!is_paired[i] && !in_other.contains(names[i])) lone.push_back(i);
  }
  return lone;
}

// Pairs lone names of one folder with those lone ones of the other that its medium
// finds by them. Usually one of the two has none, and no medium is queried.
template <class Join>
void PairFound(const Names& names, const std::vector<std::size_t>& lone, const Names& others,
               std::vector<std::size_t> lone_others, const NameRules::Find& find, Join&& join) {
  if (!find || lone.empty()) return;
  ListedNames listed;
  for (const std::size_t other : lone_others) listed.push_back(others[other]);
  for (const std::size_t i : lone) {
    if (listed.empty()) return;
    const auto found = find(std::string(names[i]), listed);
    if (!found) continue;
    const auto at = static_cast<std::ptrdiff_t>(*found);
    join(i, lone_others[*found]);
    listed.erase(listed.begin() + at);
    lone_others.erase(lone_others.begin() + at);
  }
}

std::vector<std::size_t> PairKind(const Kind& kind, const NameRules& rules, bool& has_variants) {
  std::vector<std::size_t> partners = PairByName(kind, rules, has_variants);
  std::vector<bool> first_is_paired(kind.first.size(), false);
  std::vector<bool> second_is_paired(kind.second.size(), false);
  const auto join = [&](std::size_t first, std::size_t second) {
    partners[first] = second;
    has_variants = true;
  };
  const auto for_lone = [&](auto&& pair) {
    for (std::size_t i = 0; i < partners.size(); ++i) {
      if (partners[i] == kNone) continue;
      first_is_paired[i] = second_is_paired[partners[i]] = true;
    }
    pair(Lone(kind.first, kind.in_second, first_is_paired),
         Lone(kind.second, kind.in_first, second_is_paired));
  };
  for_lone([&](const auto& first, const auto& second) {
    PairFound(kind.first, first, kind.second, second, rules.in_second, join);
  });
  for_lone([&](const auto& first, const auto& second) {
    PairFound(kind.second, second, kind.first, first, rules.in_first,
              [&](std::size_t theirs, std::size_t ours) { join(ours, theirs); });
  });
  return partners;
}

}  // namespace

NameRules NameRulesOf(FileSystem& files, HeldFolder* first, HeldFolder* second) {
  const auto find_in = [](HeldFolder* folder) -> NameRules::Find {
    if (folder == nullptr) return {};
    return [folder](const std::string& name, const ListedNames& listed) {
      return folder->FoundBy(name, listed);
    };
  };
  return {[&files](std::string_view name) { return files.FoldCase(name); }, find_in(first),
          find_in(second)};
}

NamePairs PairNames(const FolderContents& first, const FolderContents& second,
                    const NameRules& rules) {
  const Side a(first);
  const Side b(second);
  NamePairs pairs;
  pairs.files = PairKind({a.files, a.all, b.files, b.all}, rules, pairs.has_variants);
  pairs.folders = PairKind({a.folders, a.all, b.folders, b.all}, rules, pairs.has_variants);
  return pairs;
}

NamePairs PairNamesAmong(const FolderContents& first, const std::vector<FolderContents>& others,
                         const FolderContents& second, const NameRules& rules) {
  // In an order that is the same whoever is the first.
  std::map<std::string_view, std::size_t> files;
  std::map<std::string_view, std::size_t> folders;
  const auto add = [&](const FolderContents& contents) {
    for (const FolderEntry& file : contents.files) files.emplace(file.name, 0);
    for (const std::string& folder : contents.folders) folders.emplace(folder, 0);
  };
  add(first);
  for (const FolderContents& other : others) add(other);
  FolderContents all;
  for (auto& [name, place] : files) {
    place = all.files.size();
    all.files.push_back({std::string(name)});
  }
  for (auto& [name, place] : folders) {
    place = all.folders.size();
    all.folders.emplace_back(name);
  }
  const NamePairs among = PairNames(all, second, rules);
  NamePairs pairs;
  pairs.has_variants = among.has_variants;
  for (const FolderEntry& file : first.files) pairs.files.push_back(among.files[files[file.name]]);
  for (const std::string& folder : first.folders) {
    pairs.folders.push_back(among.folders[folders[folder]]);
  }
  return pairs;
}

}  // namespace tarnvale
