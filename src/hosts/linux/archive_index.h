// The archive marks of files, by their paths.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "hosts/linux/temporaries.h"

namespace tarnvale {

/// Which file it was whose archive attribute was cleared. No device: its number
/// changes from one start of the system to the next.
struct ArchiveMark {
  std::int64_t size_bytes = 0;
  std::int64_t modified_ns = 0;  ///< since 1970-01-01 UTC
  std::uint64_t inode = 0;       ///< 0 where that isn't the file's for good
  std::int64_t born_ns = 0;      ///< since 1970-01-01 UTC; 0 where nobody knows
  /// When anything of the file changed last, likewise: what is written over it with
  /// size and time put back.
  std::int64_t changed_ns = 0;
  bool operator==(const ArchiveMark&) const = default;

  /// "size modified_ns inode born_ns changed_ns", all decimal.
  std::string ToText() const;
  /// Takes such a text and a blank from the front of `text`; none where there is
  /// something else, as in the marks of older releases.
  static std::optional<ArchiveMark> Take(std::string_view& text);
};

/// Marks by native path, kept in one text file: a line for each change, "size
/// modified_ns inode born_ns changed_ns path" or "- path" for a mark that was taken away, the
/// last one of a path counts. Backslashes and line feeds in a path are written
/// "\\", "\n".
class ArchiveIndex {
 public:
  /// `state_folder` is a native folder, made when it is first needed.
  ArchiveIndex(std::string state_folder, Temporaries& temporaries);

  /// Null when the file has none.
  const ArchiveMark* Find(const std::string& native);

  /// Raises 75 when the index can't be written.
  void Set(const std::string& native, const ArchiveMark& mark);
  /// Takes a mark away; does nothing when there is none.
  void Remove(const std::string& native);

 private:
  void Load();
  void TakeLine(std::string_view line);
  void Compact();
  void Append(const std::string& line);

  std::string folder_;
  std::string file_;
  Temporaries& temporaries_;
  std::unordered_map<std::string, ArchiveMark> marks_;
  bool loaded_ = false;
};

}  // namespace tarnvale
