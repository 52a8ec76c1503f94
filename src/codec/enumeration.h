// The files of a folder tree, in the order of an archive.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace tarnvale {

/// A list of texts that always has an entry at index 0: the empty list is the
/// one that holds the empty text.
class TextList {
 public:
  /// The first value takes the place of the empty text.
  void AppendToList(std::string value);
  std::size_t UpperBound() const { return entries_.size() - 1; }
  bool IsEmpty() const { return UpperBound() < 1 && entries_[0].empty(); }
  const std::string& operator[](std::size_t index) const { return entries_[index]; }

 private:
  std::vector<std::string> entries_{std::string()};
};

/// Full paths of the files below a folder: its own first, then those of one
/// folder in it after the other. What is hidden or system is left out, files
/// and folders alike. Raises nothing: what can't be read counts as empty.
TextList EnumerateFiles(FileSystem& files, std::string_view folder, bool recurse);

/// 1-based position of the last place at which `part` occurs; 0 for none. A
/// search goes on one character behind each hit.
std::size_t FindLast(std::string_view text, std::string_view part);

/// Whether a drive occurs in a name: a part of it that is one character and a
/// colon.
bool HoldsDrive(std::string_view name);

/// A path cut behind its last backslash.
struct SplitName {
  std::string folder;  ///< with the backslash; empty when there is none
  std::string file;
};
SplitName SplitAtLastBackslash(std::string_view path);

}  // namespace tarnvale
