// Comparing two folders and keeping two trees in step.
//
// Nothing here deletes: what has gone from one side is brought back from the
// other, or left alone where the sync goes one way only.
#pragma once

#include <string>
#include <vector>

#include "platform/machine.h"

namespace tarnvale {

/// How a file of one folder stands to that of the same name in another.
namespace difference {
inline constexpr int kOnlyInFirst = -2;
inline constexpr int kOnlyInSecond = -1;
inline constexpr int kNone = 0;
inline constexpr int kFirstNewer = 1;
inline constexpr int kSecondNewer = 2;
inline constexpr int kSizesDiffer = 4;       ///< added to the date's value
inline constexpr int kAttributesDiffer = 8;  ///< added likewise
}  // namespace difference

struct FileDifference {
  std::string name;
  int status = difference::kNone;
  bool operator==(const FileDifference&) const = default;
};

class FileSync {
 public:
  explicit FileSync(Machine& machine) : machine_(machine) {}

  /// One row for each file of the first folder, in its order, then one for each
  /// file that only the second has. Names are matched without regard to case,
  /// times by the whole second. Raises nothing: a folder that can't be read
  /// counts as empty. Doesn't yield.
  std::vector<FileDifference> CompareFolders(const Path& first, const Path& second);

  /// Copies the files that differ: the newer over the older, and at equal times
  /// the first folder's. What would go to the first folder is left alone unless
  /// `two_way`. A copy that fails ends the pass over these folders and is
  /// raised; so is 9 when there is no row. Yields after each row.
  void SyncFiles(const Path& first, const Path& second, bool two_way);

  /// SyncFiles for two folders and all folders in them. A second folder that is
  /// missing is made by one copy of the first. Ignores all failures. Yields.
  void SyncFolders(const Path& first, const Path& second, bool two_way);

 private:
  struct FolderPair {
    Path first;   ///< with a backslash at the end
    Path second;  ///< likewise
    FolderContents in_first;
    FolderContents in_second;
  };
  enum class Attributes { kCompare, kIgnore };

  std::vector<FileDifference> Compare(const FolderPair& pair, Attributes attributes);
  void SyncPair(const FolderPair& pair, bool two_way);
  void SyncSubFolders(const FolderPair& pair, bool two_way);
  void CopyFolder(const Path& source, const Path& target);

  Machine& machine_;
};

}  // namespace tarnvale
