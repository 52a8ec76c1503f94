// The archive marks of files on media that can't hold them.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace tarnvale {

/// What a file was like when its archive attribute was cleared.
struct ArchiveMark {
  std::int64_t size_bytes = 0;
  std::int64_t modified_ns = 0;  ///< since 1970-01-01 UTC
  bool operator==(const ArchiveMark&) const = default;

  /// "size modified_ns", both decimal.
  std::string ToText() const;
  /// False for a text that is none.
  static bool FromText(const std::string& text, ArchiveMark& mark);
};

/// Marks by native path, kept in one text file: a line for each change, "size
/// modified_ns path" or "- path" for a mark that was taken away, the last one
/// of a path counts. Backslashes and line feeds in a path are written "\\", "\n".
class ArchiveIndex {
 public:
  /// `state_folder` is a native folder, made when it is first needed.
  explicit ArchiveIndex(std::string state_folder);

  /// Null when the file has none.
  const ArchiveMark* Find(const std::string& native);

  /// Raises 75 when the index can't be written.
  void Set(const std::string& native, const ArchiveMark& mark);
  /// Takes a mark away; does nothing when there is none.
  void Remove(const std::string& native);

 private:
  void Load();
  void TakeLine(const std::string& line);
  void Compact();
  void Append(const std::string& line);

  std::string folder_;
  std::string file_;
  std::unordered_map<std::string, ArchiveMark> marks_;
  bool loaded_ = false;
};

}  // namespace tarnvale
