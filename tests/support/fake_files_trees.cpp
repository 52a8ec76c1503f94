// Listings and whole trees of the file system in memory.
#include <optional>
#include <utility>

#include "base/failure.h"
#include "base/text.h"
#include "tests/support/fake_files.h"

namespace tarnvale::testing {
namespace {

bool Matches(std::string_view pattern, std::string_view name) {
  if (pattern.empty()) return name.empty();
  if (pattern.front() == '*') {
    return Matches(pattern.substr(1), name) || (!name.empty() && Matches(pattern, name.substr(1)));
  }
  if (name.empty() || (pattern.front() != '?' && pattern.front() != name.front())) return false;
  return Matches(pattern.substr(1), name.substr(1));
}

bool MatchesPattern(const std::string& pattern, const std::string& name) {
  return pattern.empty() || pattern == "*.*" || Matches(ToLower(pattern), ToLower(name));
}

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
  std::vector<std::string> names;
  for (const auto& [key, node] : folder->entries) {
    if (!node->is_folder && IsListed(*node, kinds) &&
        MatchesPattern(pattern.substr(last + 1), node->name)) {
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

FolderContents FakeFiles::OpenFolder(const Path& folder) {
  Enter("OpenFolder", folder);
  FolderContents contents;
  for (const auto& [key, node] : RequireFolder(folder)->entries) {
    if (node->is_folder) {
      contents.folders.push_back(node->name);
    } else {
      contents.files.push_back({node->name, node->Length(), node->modified_s});
    }
  }
  return contents;
}

// The files that are there when the folder's turn comes; what `between` does
// to them in the meantime is met as it is then.
void FakeFiles::CopyTreeInto(const Path& source, const Path& target,
                             const std::function<void()>& between,
                             std::optional<int>& first_failure) {
  std::vector<std::string> files;
  std::vector<std::string> folders;
  for (const auto& [key, node] : RequireFolder(source)->entries) {
    (node->is_folder ? folders : files).push_back(node->name);
  }
  if (Locate(target).folder == nullptr) throw ProgramError(kPathNotFound);
  EnsureFolder(target);
  PassedOver pass;
  const auto note = [&] {
    if (!first_failure && pass.StandingError()) first_failure = pass.StandingError()->Number();
    pass.Clear();
  };
  for (const std::string& name : files) {
    const Path from = WithBackslash(source) + name;
    const Path to = WithBackslash(target) + name;
    pass.Step([&] {
      RaiseScripted("CopyEntry", from, to);
      CopyFile(from, to);
    });
    note();
    if (between) between();
  }
  for (const std::string& name : folders) {
    pass.Step([&] {
      CopyTreeInto(WithBackslash(source) + name, WithBackslash(target) + name, between,
                   first_failure);
    });
    note();
  }
}

void FakeFiles::CopyTree(const Path& source, const Path& target,
                         const std::function<void()>& between) {
  Enter("CopyTree", source, target);
  std::optional<int> first_failure;
  CopyTreeInto(source, target, between, first_failure);
  if (first_failure) throw ProgramError(*first_failure);
}

void FakeFiles::MoveTree(const Path& source, const Path& target) {
  Enter("MoveTree", source, target);
  RequireFolder(source);
  if (Exists(target)) throw ProgramError(kFileAlreadyExists);
  if (EqualIgnoringCase(target.substr(0, source.size() + 1), WithBackslash(source))) {
    throw ProgramError(kPathFileAccess);
  }
  std::optional<int> first_failure;
  CopyTreeInto(source, target, {}, first_failure);
  if (first_failure) throw ProgramError(*first_failure);
  Remove(source);
}

}  // namespace tarnvale::testing
