#include "tests/support/fake_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#ifdef _WIN32
#include <windows.h>
#else
#include <locale>
#endif
#include <utility>

#include "base/characters.h"
#include "base/failure.h"
#include "base/text.h"
#include "platform/path_text.h"

namespace tarnvale::testing {
namespace {

constexpr char kCurrentDrive = 'C';
constexpr int kSettable =
    attribute::kReadOnly | attribute::kHidden | attribute::kSystem | attribute::kArchive;

char DriveOf(const PathText& path) {
  return path.drive == 0 ? kCurrentDrive : path.drive;
}

bool CanBeCreated(const std::string& name) {
  return name.find_first_of("*?\":<>|") == std::string::npos;
}

bool IsReadOnly(const FakeNode& node) {
  return (node.flags & attribute::kReadOnly) != 0;
}

}  // namespace

namespace {

// The small letter of its capital, of any alphabet.
char32_t FoldedLetter(char32_t letter) {
#ifdef _WIN32
  auto unit = static_cast<wchar_t>(letter);
  if (unit != letter) return letter;
  ::CharUpperBuffW(&unit, 1);
  ::CharLowerBuffW(&unit, 1);
  return unit;
#else
  static const std::locale all_letters("C.UTF-8");
  const auto& letters = std::use_facet<std::ctype<wchar_t>>(all_letters);
  return static_cast<char32_t>(letters.tolower(letters.toupper(static_cast<wchar_t>(letter))));
#endif
}

}  // namespace

std::string FoldedName(std::string_view name) {
  return WithEachCharacter(ToLower(name), [](char32_t letter) {
    const char32_t low = letter < 0x80 ? letter : FoldedLetter(letter);
    return low < 0x80 && letter >= 0x80 ? letter : low;
  });
}

std::string FakeNode::KeptName(const std::string& name_in_it) const {
  std::string kept = name_in_it;
  if (keeps_case_apart) return kept;
  constexpr std::string_view kApart = "u\xCC\x88";
  for (auto at = kept.find(kApart); at != std::string::npos; at = kept.find(kApart, at)) {
    kept.replace(at, kApart.size(), "ü");
  }
  kept.erase(kept.find_last_not_of(". ") + 1);
  return kept.empty() ? name_in_it : kept;
}

std::string FakeNode::KeyOf(const std::string& name_in_it) const {
  const std::string folded = FoldedName(KeptName(name_in_it));
  return keeps_case_apart ? folded + '\0' + name_in_it : folded;
}

std::shared_ptr<FakeNode> FakeNode::Entry(const std::string& name_in_it) const {
  const auto found = entries.find(KeyOf(name_in_it));
  return found == entries.end() ? nullptr : found->second;
}

std::shared_ptr<FakeNode> FakeNode::EntryInAnyCase(const std::string& name_in_it) const {
  if (auto exact = Entry(name_in_it)) return exact;
  const std::string folded = FoldedName(name_in_it);
  const auto next = entries.lower_bound(folded);
  const bool is_variant = next != entries.end() && FoldedName(next->second->name) == folded;
  return is_variant ? next->second : nullptr;
}

int FakeNode::Attributes() const {
  if (is_folder) return attribute::kDirectory | flags;
  return flags | (archive ? attribute::kArchive : 0);
}

std::int64_t FakeNode::Length() const {
  return reported_length.value_or(static_cast<std::int64_t>(content.size()));
}

FakeFiles::FakeFiles(FakeClock& clock) : clock_(clock) {
  AddDrive("C");
  MakeFolder("C:\\Program");
}

Path WithoutSeparator(Path path) {
  if (!path.empty() && IsSeparator(path.back())) path.pop_back();
  return path;
}

// With a separator at its end a path leads to a folder or to nowhere.
FakeFiles::Located FakeFiles::Locate(const Path& path) const {
  if (const Path folder = WithoutSeparator(path); folder != path && TakeApart(folder)) {
    Located at = Locate(folder);
    if (at.folder == nullptr || at.name.empty()) return at;
    const NodePtr node = at.folder->EntryInAnyCase(at.name);
    return node != nullptr && node->is_folder ? at : Located{};
  }
  const auto split = TakeApart(path);
  if (!split) return {};
  const auto drive = drives_.find(DriveOf(*split));
  if (drive == drives_.end()) return {};
  Located at{drive->second.root, {}};
  for (const std::string_view component : split->names) {
    const std::string name(component);
    if (!at.name.empty()) {
      NodePtr next = at.folder->EntryInAnyCase(at.name);
      if (next == nullptr || !next->is_folder) return {};
      at.folder = std::move(next);
    }
    at.name = name;
  }
  return at;
}

FakeFiles::NodePtr FakeFiles::Find(const Path& path) const {
  const Located at = Locate(path);
  if (at.folder == nullptr || at.name.empty()) return at.folder;
  return at.folder->EntryInAnyCase(at.name);
}

FakeFiles::NodePtr FakeFiles::Require(const Path& path) const {
  if (NodePtr node = Find(path)) return node;
  throw ProgramError(Locate(path).folder == nullptr ? kPathNotFound : kFileNotFound);
}

FakeFiles::NodePtr FakeFiles::RequireFile(const Path& path) const {
  NodePtr node = Require(path);
  if (node->is_folder) throw ProgramError(kFileNotFound);
  return node;
}

FakeFiles::NodePtr FakeFiles::RequireFolder(const Path& path) const {
  NodePtr node = Find(path);
  if (node == nullptr || !node->is_folder) throw ProgramError(kPathNotFound);
  return node;
}

FakeFiles::NodePtr FakeFiles::AddEntry(FakeNode& folder, const std::string& name, bool is_folder) {
  if (!CanBeCreated(name)) throw ProgramError(kPathFileAccess);
  auto node = std::make_shared<FakeNode>();
  node->name = folder.KeptName(name);
  node->is_folder = is_folder;
  node->modified_s = clock_.UnixSeconds();
  node->keeps_case_apart = folder.keeps_case_apart;
  folder.entries[folder.KeyOf(name)] = node;
  return node;
}

void FakeFiles::RequireFolderOf(const Path& path) const {
  if (Locate(path).folder == nullptr) throw ProgramError(kPathNotFound);
}

FakeFiles::NodePtr FakeFiles::FileForWriting(const Path& file) {
  const Located at = Locate(file);
  if (at.folder == nullptr) throw ProgramError(kPathNotFound);
  if (at.name.empty()) throw ProgramError(kPathFileAccess);
  NodePtr node = Find(file);
  if (node == nullptr) return AddEntry(*at.folder, at.name, false);
  if (node->is_folder) throw ProgramError(kPathFileAccess);
  return node;
}

void FakeFiles::SetContent(FakeNode& file, std::string content) {
  file.content = std::move(content);
  file.reported_length.reset();
  file.modified_s = file.changed_s = clock_.UnixSeconds();
  file.archive = true;
  ++file.revision;
}

void FakeFiles::LoseBytes(const Path& file) {
  const NodePtr node = Find(file);
  ASSERT_NE(node, nullptr) << "no such file: " << file;
  node->content.assign(node->content.size(), '\0');
}

void FakeFiles::Write(const Path& file, std::string content) {
  const std::size_t last = file.rfind('\\');
  const std::string name = file.substr(last + 1);
  const NodePtr folder = EnsureFolder(file.substr(0, last), &FakeNode::Entry);
  NodePtr node = folder->Entry(name);
  if (node == nullptr) node = AddEntry(*folder, name, false);
  if (node->is_folder) throw ProgramError(kPathFileAccess);
  SetContent(*node, std::move(content));
}

std::string FakeFiles::Content(const Path& file) const {
  const NodePtr node = Find(file);
  if (node != nullptr && !node->is_folder) return node->content;
  ADD_FAILURE() << "no such file: " << file;
  return {};
}

bool FakeFiles::Exists(const Path& path) const {
  return Find(path) != nullptr;
}

void FakeFiles::MakeFolder(const Path& folder) {
  EnsureFolder(folder, &FakeNode::Entry);
}

FakeFiles::NodePtr FakeFiles::EnsureFolder(const Path& folder, Lookup find) {
  const auto split = TakeApart(folder);
  if (!split || drives_.count(DriveOf(*split)) == 0) throw ProgramError(kPathNotFound);
  NodePtr at = drives_.at(DriveOf(*split)).root;
  for (const std::string_view component : split->names) {
    const std::string name(component);
    const NodePtr next = ((*at).*find)(name);
    at = next == nullptr ? AddEntry(*at, name, true) : next;
    if (!at->is_folder) throw ProgramError(kPathFileAccess);
  }
  return at;
}

void FakeFiles::Remove(const Path& path) {
  const Located at = Locate(path);
  if (const NodePtr node = Find(path)) at.folder->entries.erase(at.folder->KeyOf(node->name));
}

void FakeFiles::SetModified(const Path& path, std::int64_t seconds) {
  const NodePtr node = Require(path);
  if (node->modified_s != seconds) node->archive = true;
  node->modified_s = seconds;
}

std::int64_t FakeFiles::Modified(const Path& path) const {
  return Require(path)->modified_s;
}

void FakeFiles::ReportLength(const Path& file, std::int64_t length_bytes) {
  RequireFile(file)->reported_length = length_bytes;
}

std::vector<std::string> FakeFiles::Names(const Path& folder) const {
  std::vector<std::string> names;
  for (const auto& [key, node] : RequireFolder(folder)->entries) names.push_back(node->name);
  return names;
}

void FakeFiles::AddDrive(const std::string& letter, DriveKind kind) {
  auto root = std::make_shared<FakeNode>();
  root->is_folder = true;
  drives_[letter.front()] = {std::move(root), kind};
}

void FakeFiles::DistinguishCase(const std::string& letter) {
  drives_.at(letter.front()).root->keeps_case_apart = true;
}

void FakeFiles::RemoveDrive(const std::string& letter) {
  const auto drive = drives_.find(letter.front());
  if (drive == drives_.end()) return;
  std::vector<NodePtr> open{drive->second.root};
  while (!open.empty()) {
    const NodePtr node = open.back();
    open.pop_back();
    node->on_medium = false;
    for (const auto& [key, entry] : node->entries) open.push_back(entry);
  }
  drives_.erase(drive);
}

std::vector<Drive> FakeFiles::Drives() {
  std::vector<Drive> drives;
  for (const auto& [letter, drive] : drives_) {
    drives.push_back({std::string(1, letter) + ":\\", drive.kind});
  }
  return drives;
}

Path FakeFiles::ProgramFolder() {
  return "C:\\Program";
}

std::int64_t FakeFiles::Length(const Path& file) {
  Enter("Length", file);
  return RequireFile(file)->Length();
}

int FakeFiles::Attributes(const Path& path) {
  Enter("Attributes", path);
  return Require(path)->Attributes();
}

void FakeFiles::SetAttributes(const Path& file, int value) {
  Enter("SetAttributes", file, std::to_string(value));
  if ((value & ~kSettable) != 0) throw ProgramError(kInvalidCall);
  const NodePtr node = Require(file);
  if (node->is_folder) throw ProgramError(kPathFileAccess);
  node->flags = value & ~attribute::kArchive;
  const bool changed = node == copied_ && node->revision != copied_revision_;
  copied_ = nullptr;
  if ((value & attribute::kArchive) != 0 || !changed) {
    node->archive = (value & attribute::kArchive) != 0;
  }
}

bool FakeFiles::FolderExists(const Path& folder) {
  const NodePtr node = Find(folder);
  return node != nullptr && node->is_folder;
}

bool FakeFiles::FileExists(const Path& file) {
  const NodePtr node = Find(file);
  return node != nullptr && !node->is_folder;
}

// `old` is what the copy replaces, if anything.
void FakeFiles::CopyNode(const NodePtr& from, const NodePtr& old, FakeNode& folder,
                         const std::string& name) {
  if (from == nullptr || from->is_folder) throw ProgramError(kFileNotFound);
  if (old == from) return;
  if (old != nullptr && (old->is_folder || IsReadOnly(*old))) throw ProgramError(kPathFileAccess);
  const NodePtr to = old == nullptr ? AddEntry(folder, name, false) : old;
  SetContent(*to, from->content);
  to->flags = from->flags;
  to->modified_s = from->modified_s;
}

void FakeFiles::CopyWhole(const Path& source, const Path& target, Rights rights) {
  copied_with_[target] = rights;
  copied_ = nullptr;
  Enter("CopyWhole", source, target);
  const NodePtr from = Find(source);
  if (from == nullptr || from->is_folder) throw ProgramError(kFileNotFound);
  const Located at = Locate(target);
  if (at.folder == nullptr) throw ProgramError(kPathNotFound);
  if (at.name.empty()) throw ProgramError(kPathFileAccess);
  CopyNode(from, Find(target), *at.folder, at.name);
  NoteCopied(from);
}

void FakeFiles::CreateFolder(const Path& folder) {
  Enter("CreateFolder", folder);
  const Located at = Locate(WithoutSeparator(folder));
  if (at.folder == nullptr) throw ProgramError(kPathNotFound);
  if (Find(folder) != nullptr) throw ProgramError(kPathFileAccess);
  AddEntry(*at.folder, at.name, true);
}

void FakeFiles::CreateFoldersOf(const Path& path) {
  Enter("CreateFoldersOf", path);
  const auto last = path.rfind('\\');
  if (last == Path::npos) throw ProgramError(kPathNotFound);
  EnsureFolder(path.substr(0, last + 1));
}

void FakeFiles::Delete(const Path& file) {
  Enter("Delete", file);
  const NodePtr node = RequireFile(file);
  if (IsReadOnly(*node)) throw ProgramError(kPathFileAccess);
  if (is_open_ && is_open_(*node)) throw ProgramError(kPermissionDenied);
  Remove(file);
}

// A scripted failure is the medium's, and comes at the end.
std::optional<std::int64_t> FakeFiles::BeginCopies(const Path& folder) {
  if (Find(WithoutSeparator(folder)) == nullptr) return std::nullopt;
  const auto [noted, is_new] = unflushed_.emplace(folder, clock_.UnixSeconds());
  if (is_new) return std::nullopt;
  return noted->second;
}

std::unique_ptr<MediumFlush> FakeFiles::BeginFlush(const Path& folder) {
  class FakeFlush final : public MediumFlush {
   public:
    FakeFlush(int times, std::optional<int> failure) : times_(times), failure_(failure) {}
    bool IsDone() override {
      if (times_-- > 0) return false;
      if (failure_) throw ProgramError(*failure_);
      return true;
    }

   private:
    int times_;
    std::optional<int> failure_;
  };
  std::optional<int> failure;
  try {
    Enter("BeginFlush", folder);
  } catch (const ProgramError& error) {
    failure = error.Number();
  }
  RequireFolder(folder);
  return std::make_unique<FakeFlush>(flush_times_, failure);
}

}  // namespace tarnvale::testing
