// Cuts a file into numbered parts and puts such parts together again.
//
// A part is a plain slice of the file: "backup.tvz.001", "backup.tvz.002" and so
// on. No header, no checksum and no count goes with it; order and completeness
// rest on the names alone.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "base/property.h"
#include "platform/files.h"
#include "platform/open_files.h"
#include "ui/event_loop.h"

namespace tarnvale {

/// What SplitFile and JoinFile return.
enum class PartsCode : std::int16_t {
  kDone = 0,
  kNoFile = 1,  ///< the source or the named part is missing, or its name is empty
  /// Split: the segment size is 0. Join: there is no part with the number 1.
  kNothingToDo = 2,
  /// Split: length / segment size is 1000 or more. Join: the output exists.
  kRefused = 3,
  kFailed = 4,  ///< any error during the work
};

/// A path cut behind its last backslash.
struct LocatedName {
  Path folder;  ///< with the backslash at its end
  std::string name;
};

/// Raises 5 for a path without a backslash or of one character.
LocatedName LocateName(const Path& path);

/// Name of a part: "000" is the pattern, so it has four digits from 1000 on.
Path PartName(const Path& file, std::int16_t number);

/// What the routines share with the window that they work for.
struct PartsScreen {
  /// Folder for the parts of a split. Read anew at each part.
  const Property<std::string>& target_folder;
  /// Takes folder and base name of a join.
  Property<std::string>& joined_file;
  /// `spProg`: called with the percent after each step, and 0 at the end.
  std::function<void(std::int16_t)> spProg;
};

/// The routines. Both hold the file numbers 1 and 2 of the machine's table, yield
/// twice after each step of at most 12000 bytes, and raise nothing: an error
/// closes every open file of the program, whoever opened it, and is returned as
/// code 4. What was written by then stays. Lengths are signed 32 bits.
class modFHand {
 public:
  modFHand(FileSystem& files, OpenFiles& open_files, EventLoop& loop, PartsScreen screen)
      : files_(files), open_files_(open_files), loop_(loop), screen_(std::move(screen)) {}

  /// Cuts `source` into parts of `segment_bytes`, the last one shorter, below
  /// the target folder. An old part is written over from its beginning: what it
  /// is longer keeps standing. `part_count` is set on success only.
  /// Required: a negative size never returns. It yields without end.
  PartsCode SplitFile(const Path& source, std::int32_t segment_bytes, std::int16_t& part_count);

  /// Joins the parts that `part` is one of into a file beside them, which must
  /// not exist. The first gap in the numbers ends the join. `part` holds the name
  /// of the last part that was read; `part_count` is set on success only. The
  /// parts stay.
  PartsCode JoinFile(Path& part, std::int16_t& part_count);

 private:
  /// One file copied to another, by number, and how far that is.
  struct Transfer {
    int from = 0;
    int to = 0;
    std::int32_t total = 0;  ///< bytes that are the full 100 percent
    std::int32_t done = 0;   ///< bytes moved so far, of all parts
  };

  PartsCode Guarded(const std::function<PartsCode()>& work);
  PartsCode Split(const Path& source, std::int32_t segment_bytes, std::int16_t& part_count);
  void MakeExactly(const Path& part);
  PartsCode Join(Path& part, std::int16_t& part_count);
  bool IsListed(const Path& file) { return !files_.List(file, {}).empty(); }
  void CopyStep(Transfer& transfer, std::int32_t remaining);

  FileSystem& files_;
  OpenFiles& open_files_;
  EventLoop& loop_;
  PartsScreen screen_;
};

}  // namespace tarnvale
