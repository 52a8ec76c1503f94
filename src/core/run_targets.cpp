#include "core/run_targets.h"

#include <unordered_set>
#include <utility>

#include "base/failure.h"
#include "platform/name_pairs.h"

namespace tarnvale {
namespace {

// Each once, in the order in which they come first.
std::vector<std::string> Distinct(std::vector<std::string> names) {
  std::unordered_set<std::string> seen;
  std::erase_if(names, [&](const std::string& name) { return !seen.insert(name).second; });
  return names;
}

}  // namespace

void RunTargets::Begin(std::vector<std::string> file_names, std::vector<RunFolder> folders,
                       bool all_in_one) {
  End();
  for (std::string& name : Distinct(std::move(file_names))) {
    wanted_.files.push_back({std::move(name)});
  }
  std::vector<std::string> folder_names;
  for (const RunFolder& folder : folders) {
    folder_names.push_back(folder.name);
    folder_names.push_back(folder.of_item);
  }
  wanted_.folders = Distinct(std::move(folder_names));
  folders_ = std::move(folders);
  all_in_one_ = all_in_one;
}

void RunTargets::End() {
  wanted_ = {};
  folder_.reset();
}

bool RunTargets::Open(const Path& location) {
  if (folder_ != nullptr && location_ == location) return true;
  folder_.reset();
  PassedOver pass;
  pass.Step([&] {
    auto folder = files_.OpenFolder(location);
    const FolderContents there = folder->Contents();
    const NameRules rules = NameRulesOf(files_, nullptr, folder.get());
    NamePairs pairs = PairNames(wanted_, there, rules);
    if (pairs.has_variants && all_in_one_ && !folders_.empty()) {
      pairs = PairNamesAmong(wanted_, ContentsOfFolders(), there, rules);
    }
    file_names_.clear();
    folder_names_.clear();
    for (std::size_t i = 0; i < pairs.files.size(); ++i) {
      if (pairs.files[i] == NamePairs::kNone) continue;
      file_names_[wanted_.files[i].name] = there.files[pairs.files[i]].name;
    }
    for (std::size_t i = 0; i < pairs.folders.size(); ++i) {
      if (pairs.folders[i] == NamePairs::kNone) continue;
      folder_names_[wanted_.folders[i]] = there.folders[pairs.folders[i]];
    }
    folder_ = std::move(folder);
    location_ = location;
  });
  return folder_ != nullptr;
}

std::vector<FolderContents> RunTargets::ContentsOfFolders() {
  std::vector<FolderContents> all;
  for (const RunFolder& folder : folders_) {
    PassedOver pass;
    pass.Step([&] { all.push_back(files_.OpenFolder(folder.source)->Contents()); });
  }
  return all;
}

Companions RunTargets::CompanionsOf(const Path& source, const std::string& name) const {
  Companions companions;
  for (const RunFolder& folder : folders_) {
    if (folder.source != source && (name.empty() || folder.name == name)) {
      companions.folders.push_back(folder.source);
    }
  }
  if (name.empty()) companions.names.files = wanted_.files;
  return companions;
}

HeldEntry RunTargets::EntryFor(const RealNames& names, const std::string& name) const {
  const auto real = names.find(name);
  return {*folder_, real == names.end() ? name : real->second};
}

std::optional<HeldEntry> RunTargets::FileIn(const Path& location, const std::string& name) {
  if (!Open(location)) return std::nullopt;
  return EntryFor(file_names_, name);
}

std::optional<HeldEntry> RunTargets::FolderIn(const Path& location, const std::string& name) {
  if (!Open(location)) return std::nullopt;
  return EntryFor(folder_names_, name);
}

}  // namespace tarnvale
