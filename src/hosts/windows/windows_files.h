// The file system of a Windows machine.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hosts/windows/locator.h"
#include "hosts/windows/replacing_copy.h"
#include "hosts/windows/temporaries.h"
#include "hosts/windows/windows_folder.h"
#include "platform/files.h"

namespace tarnvale {

/// Sets attributes as the system does; a test may look on.
using SetAttributesCall = std::function<bool(const std::wstring& native, DWORD attributes)>;

/// The system's own drives and attributes. Names are what the medium says: what differs
/// in case, and a short name, is the same file. A path to a link names the link for
/// Delete and the target of a copy, and what it leads to otherwise.
class WindowsFiles : public FileSystem {
 public:
  WindowsFiles(const Locator& locator, Temporaries& temporaries, std::wstring program_file,
               SetAttributesCall set_attributes);

  std::string FoldCase(std::string_view name) override;
  std::vector<Drive> Drives() override { return locator_.Drives().List(); }
  Path ProgramFolder() override;
  std::int64_t Length(const Path& file) override;
  /// Values above 255 are given as the system has them.
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
  /// By a copy: what was moved counts as changed.
  void MoveTree(const Path& source, const Path& target) override;
  void CreateFolder(const Path& folder) override;
  void CreateFoldersOf(const Path& path) override;
  void Delete(const Path& file) override;
  std::vector<std::string> List(const Path& pattern, ListKinds kinds) override;
  std::vector<std::string> ListFolders(const Path& folder, ListKinds kinds) override;
  std::unique_ptr<HeldFolder> OpenFolder(const Path& folder) override;
  /// Done at once: what this program writes is on the medium before it gets its name or
  /// is closed, as only an administrator may flush a whole medium.
  std::unique_ptr<MediumFlush> BeginFlush(const Path& folder) override;

 private:
  struct CopySource {
    std::wstring native;
    FileState state;
  };
  CopySource SourceOfCopy(const Path& source);
  void CopyFileTo(const CopySource& source, const std::wstring& target,
                  const std::optional<FileState>& there, Rights rights,
                  const CopyExtras& extras = {});
  static std::wstring FolderToRead(const Located& located);
  std::unique_ptr<HeldFolder> TreeTarget(const Path& target);
  static std::unique_ptr<HeldFolder> TreeTarget(const HeldEntry& target);
  void CopyTree(HeldFolder& source, HeldFolder& target, const std::function<void()>& between,
                Rights rights, const LeftOutFolders& left_out);

  const Locator& locator_;
  Temporaries& temporaries_;
  TemporarySlot slot_{temporaries_};
  const std::wstring program_file_;
  SetAttributesCall set_attributes_;
  /// By the last CopyWhole, with its state before.
  std::optional<std::pair<std::wstring, FileState>> copied_;
};

}  // namespace tarnvale
