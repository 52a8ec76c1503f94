// The file system as the logic sees it.
//
// Paths are absolute, in one language on every system: drive letter, colon,
// backslashes; UTF-8, on Linux whatever bytes a name has. A path that begins with a
// backslash is on the current drive. Names are found exactly first, then
// without regard to the case of letters. A path that isn't absolute leads nowhere, as one
// into a missing folder does; so does a file's that ends in a backslash.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

using Path = std::string;

/// Bits of an attribute value. A value of 0 is a file without any.
namespace attribute {
inline constexpr int kReadOnly = 1;
inline constexpr int kHidden = 2;
inline constexpr int kSystem = 4;
inline constexpr int kDirectory = 16;
/// Set on every file that was made, written, replaced, moved or given another time since the
/// bit was last cleared.
inline constexpr int kArchive = 32;
}  // namespace attribute

/// Which entries a listing by pattern returns. Plain files are always among
/// them; a file that is hidden or system only if its flag is set.
struct ListKinds {
  bool hidden = false;
  bool system = false;
};

enum class DriveKind {
  kFixed,      ///< in the machine: looking at it answers at once
  kRemovable,  ///< may have no medium in it
  kOptical,    ///< likewise
  kNetwork,    ///< may be out of reach, and answer late
};

/// A drive of the machine.
struct Drive {
  Path root;  ///< "C:\\"
  DriveKind kind = DriveKind::kFixed;
  bool operator==(const Drive&) const = default;
};

/// One entry of an opened folder.
struct FolderEntry {
  std::string name;
  std::int64_t size_bytes = 0;
  /// Last modification in whole seconds since 1970-01-01 UTC, rounded down.
  std::int64_t modified_s = 0;
  /// What that leaves out, as exactly as the medium keeps it.
  std::int32_t modified_ns = 0;
  bool operator==(const FolderEntry&) const = default;
};

/// What one folder holds, each list by name without regard to case. `files`
/// holds plain files and symbolic links; `folders` real folders only. What no
/// path can name (a backslash or a star in a name), devices, sockets, pipes and
/// leftover temporary copies are in neither.
struct FolderContents {
  std::vector<FolderEntry> files;
  std::vector<std::string> folders;
};

/// Names of files, or of folders, in a folder's contents.
using ListedNames = std::vector<std::string_view>;

/// A medium on its way to hold everything that was written to it. Letting go of
/// it doesn't stop that and waits for nothing.
class MediumFlush {
 public:
  virtual ~MediumFlush() = default;

  /// Returns at once. Raises 57 when the medium has failed.
  virtual bool IsDone() = 0;
};

/// What others than its owner may do with a file or folder that is made. Whoever
/// copies knows which side is the computer and which the storage, the system doesn't.
enum class Rights {
  /// Nothing.
  kOwner,
  /// What the user lets others do with new files. Of a copy, nothing that the
  /// source's rights forbid: for whatever comes from a medium to the computer.
  kNewFile,
  /// Of a copy: what the source's let them do, access lists included.
  kSource,
};

/// A folder that is held: it stays this one, whatever comes to stand at its path.
/// Names are exact here: one in another case is another name, whatever the medium takes
/// it for. Its names are those that Contents gave last, or that were made here since;
/// whatever else the medium finds is another one. Links are not followed. All members
/// raise 76 once the folder is gone.
class HeldFolder {
 public:
  virtual ~HeldFolder() = default;

  /// What it holds now. Raises 75, 57.
  virtual FolderContents Contents() = 0;

  /// The one file of this name, as Contents gives it; none where there is none.
  virtual std::optional<FolderEntry> File(const std::string& name) = 0;

  /// Which of `listed`, places in it, the medium finds by `name` as well, which isn't
  /// among the contents: it may take both for one, whatever makes them differ.
  virtual std::optional<std::size_t> FoundBy(const std::string& name,
                                             const ListedNames& listed) = 0;

  /// A folder within it, held likewise; `names` leads there, with backslashes
  /// between; empty for this one, held once more. Raises 76 when there is none, also
  /// where a link is in the way, 75.
  virtual std::unique_ptr<HeldFolder> Inner(const std::string& names) = 0;

  /// Make an empty folder, an empty file. Raise 75 when the name is taken or can't
  /// be a name, 58 when the medium doesn't distinguish it from another one that is taken,
  /// 61, 70.
  virtual void MakeFolder(const std::string& name) = 0;
  virtual void MakeFile(const std::string& name, Rights rights = Rights::kNewFile) = 0;

  /// Whether both are the same folder. `other` is one of the same file system.
  virtual bool Is(const HeldFolder& other) = 0;
};

/// Folders that a copy doesn't enter wherever it meets them on its way down.
using LeftOutFolders = std::vector<const HeldFolder*>;

/// What a held folder has under this name, or would have. As a target it is the
/// entry of exactly this name: copying raises 58 when the medium doesn't distinguish the
/// name from another one that is taken. Without a name it is that folder itself, as
/// the target of a tree.
struct HeldEntry {
  HeldFolder& folder;  ///< of the same file system
  std::string name;
};

class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// A form of a name in which names are equal that differ in the case of letters
  /// only. For comparing; it is the name of nothing.
  virtual std::string FoldCase(std::string_view name) = 0;

  /// The drives of this moment, by their letters: they come and go, and a host whose
  /// system reports that follows it where it shows them. Looks at no medium and doesn't
  /// raise. A share of the network that has no letter is none of them.
  virtual std::vector<Drive> Drives() = 0;

  /// The folder that the running program lies in, without a backslash at its
  /// end.
  virtual Path ProgramFolder() = 0;

  /// Length of a plain file in bytes. Raises 53 when there is none (a folder
  /// counts as none), 76 when its folder is missing, 75 or 70 when it can't be
  /// determined. Follows symbolic links.
  virtual std::int64_t Length(const Path& file) = 0;

  /// Attribute bits of a file or folder. Raises 53, 76, 75.
  virtual int Attributes(const Path& path) = 0;

  /// Sets the attributes of a file: any sum of read-only, hidden, system and
  /// archive. A file that the last CopyWhole copied and that has changed since keeps
  /// the archive attribute: what it holds is in no copy. Raises 5 for a value that is no such sum
  /// or that the host can't express for this name, and then changes nothing; 53; 76; 75 when
  /// refused, and for a folder.
  virtual void SetAttributes(const Path& file, int value) = 0;

  virtual bool FolderExists(const Path& folder) = 0;
  /// True for anything but a folder.
  virtual bool FileExists(const Path& file) = 0;

  /// Copies one file whole, replacing `target`. Modification time, extended
  /// attributes and those permissions that `rights` lets through go with it, set-id
  /// bits never. Follows a symbolic link to its file. A copy onto itself changes nothing.
  /// The target changes in one step: after any failure it is as it was, and no
  /// other file is left. Raises 53 (no source, or a folder), 76 (no folder for
  /// the target), 61 (medium full), 70 (source or target folder refused), 75
  /// (the target is read-only or a folder). A host may replace a read-only one that has the
  /// source's time and fewer bytes: a lost medium has left that of a copy. Doesn't yield.
  virtual void CopyWhole(const Path& source, const Path& target,
                         Rights rights = Rights::kNewFile) = 0;
  /// Likewise, to an entry of a held folder; raises 58 as well.
  virtual void CopyWhole(const Path& source, const HeldEntry& target,
                         Rights rights = Rights::kNewFile) = 0;

  /// As CopyWhole, but a symbolic link is copied as a link. Raises 58 as well when a
  /// folder has the link's place, and when the target comes or changes meanwhile.
  virtual void CopyEntry(const HeldEntry& source, const HeldEntry& target,
                         Rights rights = Rights::kNewFile) = 0;

  /// Copies a folder with all that is in it into `target`, which is made if it
  /// is missing (its parent must exist), replacing files that are there and
  /// deleting nothing. An entry that fails doesn't stop the others: the first
  /// failure is raised at the end. Names are paired as PairNames says; a second
  /// one that the target's medium doesn't distinguish from the first fails with 58. Calls
  /// `between` after each file. Nothing is copied of folders in it that are in
  /// `left_out`. Both folders stay those that it began with. Raises
  /// 76 when `source` is no folder or the parent of `target` is missing, 75 when `target` is a
  /// file.
  virtual void CopyTree(const Path& source, const Path& target,
                        const std::function<void()>& between, Rights rights = Rights::kNewFile,
                        const LeftOutFolders& left_out = {}) = 0;
  virtual void CopyTree(const Path& source, const HeldEntry& target,
                        const std::function<void()>& between, Rights rights = Rights::kNewFile,
                        const LeftOutFolders& left_out = {}) = 0;
  virtual void CopyTree(const HeldEntry& source, const HeldEntry& target,
                        const std::function<void()>& between, Rights rights = Rights::kNewFile,
                        const LeftOutFolders& left_out = {}) = 0;

  /// Moves a folder. Raises 76 when `source` is no folder, 58 when the target
  /// exists, 75 when it would lie in the source, by whatever path, or can't hold all
  /// of it, otherwise as CopyTree; the source goes only after all of it has arrived.
  virtual void MoveTree(const Path& source, const Path& target) = 0;

  /// Raises 75 when it exists already, 76 when its parent is missing, 70.
  virtual void CreateFolder(const Path& folder) = 0;
  /// Creates all folders of a path up to its last backslash. Raises 76, 75, 70.
  virtual void CreateFoldersOf(const Path& path) = 0;

  /// Deletes one file. Raises 53, 75, and 70, also for one that is open in the
  /// machine's table of open files, which stays.
  virtual void Delete(const Path& file) = 0;

  /// Names of the plain files that match the pattern in the last component of
  /// `pattern` ("*" any run, "?" any one character, "*.*" everything), by name
  /// without regard to case. A folder that is missing gives an empty list; one
  /// that can't be read raises 75.
  virtual std::vector<std::string> List(const Path& pattern, ListKinds kinds) = 0;

  /// Names of the folders in a folder ("." and ".." left out), same order.
  /// With neither flag, hidden and system folders are left out. Raises 76, 75.
  virtual std::vector<std::string> ListFolders(const Path& folder, ListKinds kinds) = 0;

  /// Holds a folder; a link to one counts as the folder that it leads to. Raises 76
  /// when `folder` is none, 75 when it can't be read.
  virtual std::unique_ptr<HeldFolder> OpenFolder(const Path& folder) = 0;

  /// Says that copies to this folder, and to those in it, begin, and notes it there until EndCopies
  /// says that all have reached their medium. Returns since when some may not have: what came to
  /// the folder then may have its whole length and time, and other bytes. None when the ones before
  /// have, and on a host where each has before it gets its name. In seconds since 1970-01-01 UTC,
  /// by the medium. Raises nothing: where nothing can be noted, nothing is known.
  virtual std::optional<std::int64_t> BeginCopies(const Path&) { return std::nullopt; }
  virtual void EndCopies(const Path&) {}

  /// Makes a copy older than any file, and no longer read-only, that came or changed since then,
  /// and has the time of its file, to the second, but another length, or other bytes where its file
  /// isn't all zeros. False where there is no such copy, or where that can't be said; nothing
  /// has happened then. Raises nothing.
  virtual bool Mistrust(const HeldEntry& /*source*/, const HeldEntry& /*copy*/,
                        std::int64_t /*since_s*/) {
    return false;
  }

  /// Begins to put everything written so far to the medium that holds `folder`
  /// onto it, and returns at once: that can take minutes, and happens beside the
  /// event loop. Raises 76; 57 when it can't even begin.
  virtual std::unique_ptr<MediumFlush> BeginFlush(const Path& folder) = 0;
};

}  // namespace tarnvale
