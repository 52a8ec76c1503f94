// Comparing two folders and keeping two trees in step.
//
// Nothing here deletes: what has gone from one side is brought back from the
// other, or left alone where the sync goes one way only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/name_pairs.h"
#include "ui/event_loop.h"

namespace tarnvale {

/// How a file of one folder compares to that of the same name in another.
namespace difference {
inline constexpr int kOnlyInFirst = -2;
inline constexpr int kOnlyInSecond = -1;
inline constexpr int kNone = 0;
inline constexpr int kFirstNewer = 1;
inline constexpr int kSecondNewer = 2;
inline constexpr int kSizesDiffer = 4;       ///< added to the date's value
inline constexpr int kAttributesDiffer = 8;  ///< added likewise
}  // namespace difference

enum class SyncDirection { kNeither, kFirstToSecond, kSecondToFirst };

/// A file of two folders that a sync has compared, and what becomes of it.
struct ComparedFile {
  HeldEntry first;
  HeldEntry second;
  int status = difference::kNone;
  SyncDirection direction = SyncDirection::kNeither;  ///< of the rules
  bool copies = false;  ///< not when it would go to the first folder, one way
};

/// What else goes to the second folder of a sync. Its names are taken: none in the other
/// case stands for one of them.
struct Companions {
  std::vector<Path> folders;  ///< each with all that is in it
  FolderContents names;
};

struct FileDifference {
  std::string name;
  int status = difference::kNone;
  bool operator==(const FileDifference&) const = default;
};

class FileSync {
 public:
  /// Both must outlive it.
  FileSync(FileSystem& files, EventLoop& loop) : files_(files), loop_(loop) {}

  /// One row for each file of the first folder, in its order, then one for each
  /// file that only the second has. Names are matched as PairNames says, times by
  /// the whole second. Raises nothing: a folder that can't be read
  /// counts as empty. Doesn't yield.
  std::vector<FileDifference> CompareFolders(const Path& first, const Path& second);

  /// Copies the files that differ: the newer over the older, and at equal times
  /// the first folder's. What would go to the first folder is left alone unless
  /// `two_way`. A copy that fails ends the pass over these folders and is
  /// raised; so is 9 when there is no row. Yields after each row.
  void SyncFiles(const Path& first, const Path& second, bool two_way);

  /// SyncFiles for two folders, the computer's and the storage's, and all in them. A second folder
  /// that is missing is made by one copy of the first. To the end it works on the two folders that
  /// the paths led to at its start, and enters neither where it meets it inside the other. Ignores
  /// all failures. Yields.
  void SyncFolders(const Path& first, const Path& second, bool two_way);
  /// Likewise, with the storage's folder in one that is held, which isn't entered either.
  void SyncFolders(const Path& first, const HeldEntry& second, bool two_way,
                   const Companions& companions = {});

  /// Since when copies in the second folders may not have reached their medium, if some may
  /// not; see FileSystem::BeginCopies. Those that look right and have other bytes are made anew.
  void Suspect(std::optional<std::int64_t> since_s) { suspect_since_s_ = since_s; }

  /// Notified of each file of two folders that both are there, before it is copied
  /// or left alone.
  std::function<void(const ComparedFile&)> OnCompared;

 private:
  /// Two folders that are kept in step: held, and what they held when they were
  /// read.
  struct FolderPair {
    std::unique_ptr<HeldFolder> first;
    std::unique_ptr<HeldFolder> second;
    FolderContents in_first;
    FolderContents in_second;
    NamePairs names;
  };
  /// The two folders of a whole sync.
  struct Roots : FolderPair {
    Companions companions;
    LeftOutFolders left_out;  ///< not entered where they are met on the way down
  };
  /// A file under its name in each of two folders.
  struct Row {
    std::string first;
    std::string second;
    int status;
    std::optional<FolderEntry> listed_in_first;
    std::optional<FolderEntry> listed_in_second;
  };
  struct SubFolders {
    std::string first;
    std::string second;  ///< the first's, where it has none of its own
    bool in_both = false;
  };
  /// Two folders whose files are in step, and what of the folders in them is still to
  /// come. Their paths count from the roots.
  struct Level {
    Path first;
    Path second;
    std::vector<SubFolders> folders;
    std::vector<std::string> only_in_second;
    std::size_t next = 0;
  };

  NamePairs Pair(const FolderPair& pair);
  void Read(FolderPair& pair);
  void Read(FolderPair& pair, const Companions& companions, const Path& below);
  static std::vector<Row> Compare(const FolderContents& first, const FolderContents& second,
                                  const NamePairs& pairs);
  bool IsLost(const FolderPair& pair, const Row& row);
  void SyncPair(const FolderPair& pair, bool two_way);
  template <class Hold, class CopyWhole>
  void SyncFolders(const Path& first, Hold&& hold_second, CopyWhole&& copy_whole, bool two_way,
                   LeftOutFolders left_out, const Companions& companions);
  void SyncTrees(Roots& roots, bool two_way);
  std::optional<Level> EnterFolders(const Roots& roots, const Level& outer,
                                    const SubFolders& folders, bool two_way);
  static Level LevelOf(const FolderPair& pair, const Path& first, const Path& second);
  void CopyFile(const HeldEntry& source, const HeldEntry& target,
                const std::optional<FolderEntry>& target_as_listed, Rights rights);
  std::function<void()> Yielding();

  FileSystem& files_;
  EventLoop& loop_;
  std::optional<std::int64_t> suspect_since_s_;
};

}  // namespace tarnvale
