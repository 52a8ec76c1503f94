// A file system in memory.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "tests/support/fake_clock.h"
#include "tests/support/scripted_failures.h"

namespace tarnvale::testing {

/// A file or folder of FakeFiles.
struct FakeNode {
  std::string name;
  bool is_folder = false;
  std::string content;
  int flags = 0;  ///< read-only, hidden, system
  bool archive = true;
  std::optional<std::int64_t> reported_length;  ///< in place of the content's
  std::int64_t modified_s = 0;
  std::int64_t changed_s = 0;     ///< by the virtual clock
  std::uint64_t revision = 0;     ///< grows with each change of the content
  bool on_medium = true;          ///< false once its drive was removed
  bool keeps_case_apart = false;  ///< a folder's: names that differ at all are two names
  std::map<std::string, std::shared_ptr<FakeNode>> entries;  ///< by KeyOf

  /// Orders names as listings do; one key for all that the medium takes for one.
  std::string KeyOf(const std::string& name_in_it) const;
  /// What something of this name is called that is made in it.
  std::string KeptName(const std::string& name_in_it) const;
  /// What the medium finds by a name; null for nothing.
  std::shared_ptr<FakeNode> Entry(const std::string& name_in_it) const;
  /// As the medium finds it, or else the first that differs in case.
  std::shared_ptr<FakeNode> EntryInAnyCase(const std::string& name_in_it) const;

  int Attributes() const;
  std::int64_t Length() const;
};

/// Of a path: what a folder is named by, without one at its end.
Path WithoutSeparator(Path path);

/// Lower case of the letters of all alphabets, in UTF-8.
std::string FoldedName(std::string_view name);

/// Drives with folders and files. Names are kept as first written and found
/// exactly, or else without regard to the case of letters; a drive takes names in
/// two cases for one unless it is to distinguish them, and keeps neither points and
/// blanks at their ends nor letters apart from their accents (a u and its two points
/// become one character). Every name can carry every
/// attribute. There are no symbolic links. "." and ".." in paths are resolved by
/// text. Text that is no absolute path names nothing: 76. Names with one of
/// * ? " : < > | can't be made: 75.
class FakeFiles : public FileSystem, public ScriptedFailures {
 public:
  /// Drive C: with the program folder C:\Program.
  explicit FakeFiles(FakeClock& clock);

  // What tests set up and look at; none of it is recorded or can fail. Names go by
  // the medium when something is made, and are looked up as the interface does.

  /// Gives a file this content, and makes it and its folders when missing. Sets
  /// its archive bit and, as modification time, the virtual clock.
  void Write(const Path& file, std::string content);
  /// Fails the test, and is empty, when there is no such file.
  std::string Content(const Path& file) const;
  /// A file or a folder.
  bool Exists(const Path& path) const;
  void MakeFolder(const Path& folder);
  /// Removes a file, or a folder with all that is in it.
  void Remove(const Path& path);
  /// Seconds since 1970-01-01 UTC. Sets the archive bit when it changes.
  void SetModified(const Path& path, std::int64_t seconds);
  std::int64_t Modified(const Path& path) const;
  /// Lets a file report another length than its content has, until its content
  /// changes: for lengths that no test could write.
  void ReportLength(const Path& file, std::int64_t length_bytes);
  /// Names of all that a folder holds, in the order of listings.
  std::vector<std::string> Names(const Path& folder) const;
  /// A file's bytes become others; its length and times stay.
  void LoseBytes(const Path& file);
  /// Whether copies to a folder were begun, and haven't ended.
  bool HasUnflushed(const Path& folder) const { return unflushed_.contains(folder); }
  /// How often each flush says that it isn't done yet, once at least.
  void FlushSlowly(int times) { flush_times_ = times; }
  void AddDrive(const std::string& letter, DriveKind kind = DriveKind::kFixed);
  /// From now on, what is made on this drive distinguishes `a` from `A`.
  void DistinguishCase(const std::string& letter);
  /// What was open on it stays open and fails.
  void RemoveDrive(const std::string& letter);

  /// With which rights the last copy onto a path was made; none when none was.
  std::optional<Rights> CopiedWith(const Path& target) const {
    const auto entry = copied_with_.find(target);
    return entry == copied_with_.end() ? std::nullopt : std::optional(entry->second);
  }

  // The interface.
  std::string FoldCase(std::string_view name) override { return FoldedName(name); }
  std::vector<Drive> Drives() override;
  Path ProgramFolder() override;
  std::int64_t Length(const Path& file) override;
  int Attributes(const Path& path) override;
  void SetAttributes(const Path& file, int value) override;
  bool FolderExists(const Path& folder) override;
  bool FileExists(const Path& file) override;
  void CopyWhole(const Path& source, const Path& target, Rights rights = Rights::kNewFile) override;
  void CopyWhole(const Path& source, const HeldEntry& target,
                 Rights rights = Rights::kNewFile) override;
  void CopyEntry(const HeldEntry& source, const HeldEntry& target,
                 Rights rights = Rights::kNewFile) override;
  void CopyTree(const Path& source, const Path& target, const std::function<void()>& between,
                Rights rights = Rights::kNewFile, const LeftOutFolders& left_out = {}) override;
  void CopyTree(const Path& source, const HeldEntry& target, const std::function<void()>& between,
                Rights rights = Rights::kNewFile, const LeftOutFolders& left_out = {}) override;
  void CopyTree(const HeldEntry& source, const HeldEntry& target,
                const std::function<void()>& between, Rights rights = Rights::kNewFile,
                const LeftOutFolders& left_out = {}) override;
  void MoveTree(const Path& source, const Path& target) override;
  void CreateFolder(const Path& folder) override;
  void CreateFoldersOf(const Path& path) override;
  void Delete(const Path& file) override;
  std::vector<std::string> List(const Path& pattern, ListKinds kinds) override;
  std::vector<std::string> ListFolders(const Path& folder, ListKinds kinds) override;
  std::unique_ptr<HeldFolder> OpenFolder(const Path& folder) override;
  std::optional<std::int64_t> BeginCopies(const Path& folder) override;
  void EndCopies(const Path& folder) override { unflushed_.erase(folder); }
  bool Mistrust(const HeldEntry& source, const HeldEntry& copy, std::int64_t since_s) override;
  std::unique_ptr<MediumFlush> BeginFlush(const Path& folder) override;

  // For the fakes that work on these files.
  using NodePtr = std::shared_ptr<FakeNode>;
  /// None when nothing has this name.
  NodePtr Find(const Path& path) const;
  /// Raises 76 when the folder that would hold `path` is missing.
  void RequireFolderOf(const Path& path) const;
  /// The file to write to, made when missing. Raises 76, 75 for a folder.
  NodePtr FileForWriting(const Path& file);
  void SetContent(FakeNode& file, std::string content);
  /// The held folders of these files.
  std::unique_ptr<HeldFolder> Hold(const Path& path, NodePtr folder);
  std::unique_ptr<HeldFolder> HoldInner(const HeldFolder& folder, const std::string& names);
  void MakeHeld(HeldFolder& folder, const std::string& name, bool is_folder);
  /// Delete raises 70 for files of which this is true.
  void RefuseToDelete(std::function<bool(const FakeNode&)> is_open) {
    is_open_ = std::move(is_open);
  }

  /// Raises what the script has for "Contents" of a held folder.
  void MeetContents(const Path& folder) { RaiseScripted("Contents", folder); }

 private:
  struct Located {
    NodePtr folder;    // null: the last component's folder is missing
    std::string name;  // empty for the root of a drive
  };

  Located Locate(const Path& path) const;
  NodePtr Require(const Path& path) const;
  NodePtr RequireFile(const Path& path) const;
  NodePtr RequireFolder(const Path& path) const;
  NodePtr AddEntry(FakeNode& folder, const std::string& name, bool is_folder);
  void CopyNode(const NodePtr& from, const NodePtr& old, FakeNode& folder, const std::string& name);
  void CopyToHeld(const NodePtr& from, const HeldEntry& target);
  void NoteCopied(const NodePtr& from) {
    copied_ = from;
    copied_revision_ = from->revision;
  }
  using Lookup = NodePtr (FakeNode::*)(const std::string& name) const;
  NodePtr EnsureFolder(const Path& folder, Lookup find = &FakeNode::EntryInAnyCase);
  struct TreeManner {
    const std::function<void()>& between;
    Rights rights;
    const LeftOutFolders& left_out;
  };
  void Fill(HeldFolder& from, HeldFolder& into, const TreeManner& manner);
  void CopyFolderTree(const Path& source, const Path& target, const TreeManner& manner);
  std::unique_ptr<HeldFolder> HoldOrMake(const HeldEntry& target);

  FakeClock& clock_;
  struct FakeDrive {
    NodePtr root;
    DriveKind kind;
  };
  std::map<char, FakeDrive> drives_;
  std::map<Path, Rights> copied_with_;
  NodePtr copied_;  // by the last CopyWhole
  std::uint64_t copied_revision_ = 0;
  std::function<bool(const FakeNode&)> is_open_;
  int flush_times_ = 1;
  std::map<Path, std::int64_t> unflushed_;  ///< since when, by folder
};

}  // namespace tarnvale::testing
