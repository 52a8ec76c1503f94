// The table of files that a run works through.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/files.h"
#include "ui/message_boxes.h"

namespace tarnvale {

struct RunFile {
  std::string Path;       ///< full path of the source; empty: the row is skipped
  std::int32_t Size = 0;  ///< bytes when the table was built
  bool operator==(const RunFile&) const = default;
};

/// Rows from 0 to an upper bound that is always at least one beyond the last
/// row written. The run reads rows and list entries by one index.
///
/// Required: the offsets between rows and list entries are as they are. With an
/// upper bound of 1, a whole-folder item adds no row, and the rows behind it
/// fall one behind their entries.
class RunFiles {
 public:
  std::size_t UpperBound() const { return rows_.size() - 1; }
  const std::vector<RunFile>& Rows() const { return rows_; }
  /// Raises 9 beyond the bounds.
  const RunFile& Row(std::int64_t index) const;

  /// Back to the single empty row 0.
  void Reset() { rows_.assign(1, {}); }

  /// Adds one file. Raises what the length call raises; the row then has its
  /// path without a size, and the next item takes the same row.
  void AddFileToRun(FileSystem& files, const std::string& path);

  /// Adds the files that a pattern matches. A failure is shown in a box and
  /// ends the procedure.
  void AddFolderFilesToRun(FileSystem& files, MessageBoxes& boxes, std::string pattern);

  /// One item of the list: what ends in "*" is a folder's.
  void AddItem(FileSystem& files, MessageBoxes& boxes, const std::string& item);

 private:
  void AddMatches(FileSystem& files, std::string pattern);
  void SetUpperBound(std::size_t bound) { rows_.resize(bound + 1); }
  void Write(FileSystem& files, std::size_t row, const std::string& path);

  std::vector<RunFile> rows_{RunFile{}};
};

}  // namespace tarnvale
