// Listings and whole trees of the file system in memory.
#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "base/failure.h"
#include "base/text.h"
#include "platform/names.h"
#include "platform/tree_copy.h"
#include "tests/support/fake_files.h"

namespace tarnvale::testing {
namespace {

bool IsListed(const FakeNode& node, ListKinds kinds) {
  return ((node.flags & attribute::kHidden) == 0 || kinds.hidden) &&
         ((node.flags & attribute::kSystem) == 0 || kinds.system);
}

}  // namespace

std::vector<std::string> FakeFiles::List(const Path& pattern, ListKinds kinds) {
  Enter("List", pattern);
  const auto last = pattern.rfind('\\');
  if (last == Path::npos) return {};
  const NodePtr folder = Find(pattern.substr(0, last + 1));
  if (folder == nullptr || !folder->is_folder) return {};
  const std::string folded = FoldedName(pattern.substr(last + 1));
  std::vector<std::string> names;
  for (const auto& [key, node] : folder->entries) {
    if (!node->is_folder && IsListed(*node, kinds) &&
        MatchesPattern(FoldedName(node->name), folded)) {
      names.push_back(node->name);
    }
  }
  return names;
}

std::vector<std::string> FakeFiles::ListFolders(const Path& folder, ListKinds kinds) {
  Enter("ListFolders", folder);
  std::vector<std::string> names;
  for (const auto& [key, node] : RequireFolder(folder)->entries) {
    if (node->is_folder && IsListed(*node, kinds)) names.push_back(node->name);
  }
  return names;
}

std::unique_ptr<HeldFolder> FakeFiles::OpenFolder(const Path& folder) {
  Enter("OpenFolder", folder);
  return Hold(folder, RequireFolder(folder));
}

namespace {

FolderContents ContentsOf(const FakeNode& folder) {
  FolderContents contents;
  for (const auto& [key, node] : folder.entries) {
    if (node->is_folder) {
      contents.folders.push_back(node->name);
    } else {
      contents.files.push_back({node->name, node->Length(), node->modified_s});
    }
  }
  return contents;
}

// Held: the node stays the same one, whatever its path leads to.
class FakeFolder final : public HeldFolder {
 public:
  FakeFolder(FakeFiles& files, Path path, FakeFiles::NodePtr node)
      : files_(files), path_(std::move(path)), node_(std::move(node)) {}

  FolderContents Contents() override {
    files_.MeetContents(path_);
    if (!node_->on_medium) throw ProgramError(kPathNotFound);
    listed_ = AllNames();
    return ContentsOf(*node_);
  }
  std::optional<FolderEntry> File(const std::string& name) override {
    const FakeFiles::NodePtr node = node_->Entry(name);
    if (node == nullptr || node->is_folder) return std::nullopt;
    return FolderEntry{name, node->Length(), node->modified_s};
  }
  std::optional<std::size_t> FoundBy(const std::string& name, const ListedNames& listed) override {
    const FakeFiles::NodePtr node = node_->Entry(name);
    const auto at =
        node == nullptr ? listed.end() : std::find(listed.begin(), listed.end(), node->name);
    if (at == listed.end()) return std::nullopt;
    return static_cast<std::size_t>(at - listed.begin());
  }
  std::unique_ptr<HeldFolder> Inner(const std::string& names) override {
    return files_.HoldInner(*this, names);
  }
  void MakeFolder(const std::string& name) override { files_.MakeHeld(*this, name, true); }
  void MakeFile(const std::string& name, Rights) override { files_.MakeHeld(*this, name, false); }
  bool Is(const HeldFolder& other) override { return Of(other).Node() == node_; }

  const FakeFiles::NodePtr& Node() const { return node_; }
  const Path& OwnPath() const { return path_; }
  Path PathOf(const std::string& name) const {
    return name.empty() ? path_ : WithBackslash(path_) + name;
  }

  static const FakeFolder& Of(const HeldFolder& folder) {
    return static_cast<const FakeFolder&>(folder);
  }
  static Path PathOf(const HeldEntry& entry) { return Of(entry.folder).PathOf(entry.name); }
  /// The entry of exactly this name; null for none. Raises 58 for one that only
  /// the medium takes for it.
  static FakeFiles::NodePtr NodeOf(const HeldEntry& entry) {
    auto& folder = static_cast<FakeFolder&>(entry.folder);
    FakeFiles::NodePtr node = folder.Node()->Entry(entry.name);
    if (node == nullptr || folder.made_.contains(entry.name)) return node;
    if (!folder.listed_) folder.listed_ = folder.AllNames();
    if (!folder.listed_->contains(entry.name)) throw ProgramError(kFileAlreadyExists);
    return node;
  }
  static void NoteMade(const HeldEntry& entry) {
    static_cast<FakeFolder&>(entry.folder).made_.insert(entry.name);
  }

 private:
  std::set<std::string> AllNames() const {
    std::set<std::string> names;
    for (const auto& [key, node] : node_->entries) names.insert(node->name);
    return names;
  }

  FakeFiles& files_;
  Path path_;
  FakeFiles::NodePtr node_;
  std::optional<std::set<std::string>> listed_;  ///< by the last reading
  std::set<std::string> made_;
};

}  // namespace

std::unique_ptr<HeldFolder> FakeFiles::Hold(const Path& path, NodePtr folder) {
  return std::make_unique<FakeFolder>(*this, path, std::move(folder));
}

std::unique_ptr<HeldFolder> FakeFiles::HoldInner(const HeldFolder& folder,
                                                 const std::string& names) {
  const FakeFolder& outer = FakeFolder::Of(folder);
  if (names.empty()) return Hold(outer.OwnPath(), outer.Node());
  Enter("OpenFolder", outer.PathOf(names));
  NodePtr node = outer.Node();
  for (std::size_t at = 0; at <= names.size();) {
    const std::size_t end = std::min(names.find('\\', at), names.size());
    const std::string name = names.substr(at, end - at);
    NodePtr next = node->Entry(name);
    if (next == nullptr || next->name != name || !next->is_folder) {
      throw ProgramError(kPathNotFound);
    }
    node = std::move(next);
    at = end + 1;
  }
  return Hold(outer.PathOf(names), std::move(node));
}

void FakeFiles::MakeHeld(HeldFolder& folder, const std::string& name, bool is_folder) {
  const HeldEntry entry{folder, name};
  Enter(is_folder ? "CreateFolder" : "MakeFile", FakeFolder::PathOf(entry));
  if (name.empty() || name == "." || name == ".." || FakeFolder::NodeOf(entry) != nullptr) {
    throw ProgramError(kPathFileAccess);
  }
  AddEntry(*FakeFolder::Of(folder).Node(), name, is_folder);
  FakeFolder::NoteMade(entry);
}

void FakeFiles::CopyToHeld(const NodePtr& from, const HeldEntry& target) {
  if (from == nullptr || from->is_folder) throw ProgramError(kFileNotFound);
  CopyNode(from, FakeFolder::NodeOf(target), *FakeFolder::Of(target.folder).Node(), target.name);
  FakeFolder::NoteMade(target);
}

void FakeFiles::CopyWhole(const Path& source, const HeldEntry& target, Rights rights) {
  copied_with_[FakeFolder::PathOf(target)] = rights;
  copied_ = nullptr;
  Enter("CopyWhole", source, FakeFolder::PathOf(target));
  const NodePtr from = Find(source);
  CopyToHeld(from, target);
  NoteCopied(from);
}

void FakeFiles::CopyEntry(const HeldEntry& source, const HeldEntry& target, Rights rights) {
  copied_with_[FakeFolder::PathOf(target)] = rights;
  Enter("CopyEntry", FakeFolder::PathOf(source), FakeFolder::PathOf(target));
  CopyToHeld(FakeFolder::Of(source.folder).Node()->Entry(source.name), target);
}

bool FakeFiles::Mistrust(const HeldEntry& source, const HeldEntry& copy, std::int64_t since_s) {
  const NodePtr from = FakeFolder::Of(source.folder).Node()->Entry(source.name);
  const NodePtr to = FakeFolder::Of(copy.folder).Node()->Entry(copy.name);
  if (from == nullptr || to == nullptr || from->is_folder || to->is_folder) return false;
  if (to->changed_s < since_s || to->modified_s != from->modified_s) return false;
  bool is_lost = to->content.size() != from->content.size();
  for (std::size_t i = 0; !is_lost && i < from->content.size(); ++i) {
    is_lost = from->content[i] != to->content[i] && from->content[i] != 0;
  }
  if (!is_lost) return false;
  to->modified_s = 0;
  to->flags &= ~attribute::kReadOnly;
  return true;
}

// A folder to fill, made when missing; raises 58 as a held entry's copy does.
std::unique_ptr<HeldFolder> FakeFiles::HoldOrMake(const HeldEntry& target) {
  const NodePtr& folder = FakeFolder::Of(target.folder).Node();
  const Path path = FakeFolder::PathOf(target);
  if (!folder->on_medium) throw ProgramError(kPathNotFound);
  if (target.name.empty()) return Hold(path, folder);
  NodePtr node = FakeFolder::NodeOf(target);
  if (node == nullptr) {
    node = AddEntry(*folder, target.name, true);
    FakeFolder::NoteMade(target);
  }
  if (!node->is_folder) throw ProgramError(kPathFileAccess);
  return Hold(path, std::move(node));
}

// By the walk that hosts share. What it calls is met by the script and not recorded.
void FakeFiles::Fill(HeldFolder& from, HeldFolder& into, const TreeManner& manner) {
  const std::function<void()> between = [&] {
    const bool is_recording = std::exchange(is_recording_, true);
    if (manner.between) manner.between();
    is_recording_ = is_recording;
  };
  const bool is_recording = std::exchange(is_recording_, false);
  PassedOver pass;
  pass.Step([&] {
    CopyContents(*this, from, into, manner.rights, manner.left_out, between,
                 [](HeldFolder&, HeldFolder&) {});
  });
  is_recording_ = is_recording;
  if (pass.StandingError()) throw ProgramError(*pass.StandingError());
}

void FakeFiles::CopyTree(const Path& source, const Path& target,
                         const std::function<void()>& between, Rights rights,
                         const LeftOutFolders& left_out) {
  copied_with_[target] = rights;
  Enter("CopyTree", source, target);
  CopyFolderTree(source, target, {between, rights, left_out});
}

void FakeFiles::CopyFolderTree(const Path& source, const Path& target, const TreeManner& manner) {
  const auto from = Hold(source, RequireFolder(source));
  RequireFolderOf(WithoutSeparator(target));
  Fill(*from, *Hold(target, EnsureFolder(target)), manner);
}

void FakeFiles::CopyTree(const Path& source, const HeldEntry& target,
                         const std::function<void()>& between, Rights rights,
                         const LeftOutFolders& left_out) {
  copied_with_[FakeFolder::PathOf(target)] = rights;
  Enter("CopyTree", source, FakeFolder::PathOf(target));
  const auto from = Hold(source, RequireFolder(source));
  Fill(*from, *HoldOrMake(target), {between, rights, left_out});
}

void FakeFiles::CopyTree(const HeldEntry& source, const HeldEntry& target,
                         const std::function<void()>& between, Rights rights,
                         const LeftOutFolders& left_out) {
  copied_with_[FakeFolder::PathOf(target)] = rights;
  const Path path = FakeFolder::PathOf(source);
  Enter("CopyTree", path, FakeFolder::PathOf(target));
  const NodePtr from = FakeFolder::Of(source.folder).Node()->Entry(source.name);
  if (from == nullptr || !from->is_folder) throw ProgramError(kPathNotFound);
  Fill(*Hold(path, from), *HoldOrMake(target), {between, rights, left_out});
}

void FakeFiles::MoveTree(const Path& source, const Path& target) {
  Enter("MoveTree", source, target);
  RequireFolder(source);
  if (Exists(target)) throw ProgramError(kFileAlreadyExists);
  if (EqualIgnoringCase(target.substr(0, source.size() + 1), WithBackslash(source))) {
    throw ProgramError(kPathFileAccess);
  }
  CopyFolderTree(source, target, {{}, Rights::kSource, {}});
  Remove(source);
}

}  // namespace tarnvale::testing
