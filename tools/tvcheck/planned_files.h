// A file system that only notes what a run would copy.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/failure.h"
#include "native/native_entry.h"
#include "platform/files.h"

namespace tarnvale {

/// One end of a tree's copy.
struct TreeEnd {
  std::string native;
  std::function<std::unique_ptr<HeldFolder>()> open;  ///< raises as OpenFolder does
};

/// What a run reads of its files, and copies.
class RunWatch {
 public:
  virtual ~RunWatch() = default;

  /// A row of the table of files; `error` when the file's length can't be had.
  virtual void OnRow(const Path& file, const std::optional<ProgramError>& error) = 0;
  /// The files of a folder were listed for the table.
  virtual void OnListed(const Path& folder, const std::optional<ProgramError>& error) = 0;
  /// The run has come to a row. `attributes`: what the file has.
  virtual void OnAsked(const Path& file, int attributes) = 0;
  /// `target`: native. It has no room where the medium takes it for another one.
  virtual void OnFile(const Path& source, const std::string& target, bool has_room = true) = 0;
  /// A tree that is to be copied whole: `target` isn't there, or one of the two can't
  /// be read. Nothing of the folders in it that are left out.
  virtual void OnTree(const TreeEnd& source, const TreeEnd& target,
                      const LeftOutFolders& left_out) = 0;
  /// A folder was read.
  virtual void OnRead(const NativeEntry& folder, const FolderContents& contents) = 0;
  /// The last copy was made; the table of files is still there.
  virtual void OnEnd() = 0;
};

/// A folder that nothing is made in.
class PlannedFolder final : public HeldFolder {
 public:
  PlannedFolder(std::unique_ptr<HeldFolder> folder, RunWatch& watch)
      : folder_(std::move(folder)), watch_(watch) {}

  FolderContents Contents() override;
  std::optional<FolderEntry> File(const std::string& name) override { return folder_->File(name); }
  std::optional<std::size_t> FoundBy(const std::string& name, const ListedNames& listed) override {
    return folder_->FoundBy(name, listed);
  }
  std::unique_ptr<HeldFolder> Inner(const std::string& names) override;
  void MakeFolder(const std::string& name) override;
  void MakeFile(const std::string&, Rights) override { throw ProgramError(kPermissionDenied); }
  bool Is(const HeldFolder& other) override {
    return folder_->Is(*static_cast<const PlannedFolder&>(other).folder_);
  }

  static NativeEntry EntryOf(const HeldEntry& entry);

 private:
  NativeFolder& Native() const { return static_cast<NativeFolder&>(*folder_); }

  std::unique_ptr<HeldFolder> folder_;
  RunWatch& watch_;
};

/// Reads as the host does. What would change something is noted and taken for done.
class PlannedFiles final : public FileSystem {
 public:
  PlannedFiles(NativeHost& host, RunWatch& watch) : host_(host), watch_(watch) {}

  std::string FoldCase(std::string_view name) override { return host_.files.FoldCase(name); }
  std::vector<Drive> Drives() override { return host_.files.Drives(); }
  Path ProgramFolder() override { return host_.files.ProgramFolder(); }
  std::int64_t Length(const Path& file) override;
  /// Archive in place of none, so that an incremental run copies what it has copied
  /// before.
  int Attributes(const Path& path) override;
  bool FolderExists(const Path& folder) override { return host_.files.FolderExists(folder); }
  bool FileExists(const Path& file) override { return host_.files.FileExists(file); }
  std::vector<std::string> List(const Path& pattern, ListKinds kinds) override;
  std::vector<std::string> ListFolders(const Path& folder, ListKinds kinds) override {
    return host_.files.ListFolders(folder, kinds);
  }
  std::unique_ptr<HeldFolder> OpenFolder(const Path& folder) override;
  std::unique_ptr<MediumFlush> BeginFlush(const Path& folder) override;

  void CopyWhole(const Path& source, const Path& target, Rights rights) override;
  void CopyWhole(const Path& source, const HeldEntry& target, Rights rights) override;
  void CopyTree(const Path& source, const Path& target, const std::function<void()>& between,
                Rights rights, const LeftOutFolders& left_out) override;
  void CopyTree(const Path& source, const HeldEntry& target, const std::function<void()>& between,
                Rights rights, const LeftOutFolders& left_out) override;
  void CopyTree(const HeldEntry& source, const HeldEntry& target,
                const std::function<void()>& between, Rights rights,
                const LeftOutFolders& left_out) override;
  // The sync reports single entries itself.
  void CopyEntry(const HeldEntry&, const HeldEntry&, Rights) override {}
  void CreateFolder(const Path&) override {}
  void SetAttributes(const Path&, int) override {}

  // No run does these.
  void MoveTree(const Path&, const Path&) override { Refuse(); }
  void CreateFoldersOf(const Path&) override { Refuse(); }
  void Delete(const Path&) override { Refuse(); }

 private:
  TreeEnd EndOf(const Path& folder);
  static TreeEnd EndOf(const HeldEntry& entry);
  [[noreturn]] static void Refuse() { throw ProgramError(kPermissionDenied); }

  NativeHost& host_;
  RunWatch& watch_;
};

}  // namespace tarnvale
