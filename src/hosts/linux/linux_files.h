// The file system of a Linux machine.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "hosts/linux/archive_bit.h"
#include "hosts/linux/atomic_copy.h"
#include "hosts/linux/linux_open_files.h"
#include "hosts/linux/locator.h"
#include "hosts/linux/temporaries.h"
#include "hosts/linux/tree_copy.h"
#include "platform/files.h"

namespace tarnvale {

/// Drive C: is the root of the file system; no other drive exists. Read-only is
/// a missing write permission of the owner, hidden a leading point, system a
/// device, socket or pipe; these are never opened. A path to a link names the
/// link for Delete and the target of a copy, and what it leads to otherwise, or when
/// a backslash follows it. A link of somebody else leads nowhere: what would follow it
/// raises 75 or 70, and listings leave it out.
class LinuxFiles : public FileSystem {
 public:
  /// Both must outlive it. `state_folder` is native, for bookkeeping, and made when it
  /// is first needed.
  LinuxFiles(Locator& locator, Temporaries& temporaries, const std::string& state_folder);

  std::string FoldCase(std::string_view name) override;
  std::vector<Drive> Drives() override { return {{"C:\\", DriveKind::kFixed}}; }
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
  void EndCopies(const Path& folder) override;
  bool Mistrust(const HeldEntry& source, const HeldEntry& copy, std::int64_t since_s) override;
  std::unique_ptr<MediumFlush> BeginFlush(const Path& folder) override;

  /// From now on Delete raises 70 for what is open in this table, which must
  /// live as long. The system itself would let such a file go.
  void RefuseToDeleteOpen(const LinuxOpenFiles& open_files) { open_files_ = &open_files; }

 private:
  Located FindFollowed(const Path& path);
  Located SourceOfCopy(const Path& source);
  bool HasChangedSinceItsCopy(const struct stat& info);
  void SweepOnce(const std::string& folder);
  Descriptor OpenTreeSource(const Path& source);
  TreeTarget TargetOfTree(const Path& target, Descriptor& parent);
  void CopyTree(const Descriptor& source, const HeldEntry& target,
                const std::function<void()>& between, Rights rights,
                const LeftOutFolders& left_out);

  Locator& locator_;
  Temporaries& temporaries_;
  AtomicCopy copy_;
  std::optional<struct stat> copied_;  // by the last CopyWhole, as it was before
  ArchiveBit archive_;
  std::unordered_set<std::string> swept_;
  const LinuxOpenFiles* open_files_ = nullptr;
};

}  // namespace tarnvale
