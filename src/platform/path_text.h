// The path language as text, for hosts: paths taken apart without looking at any
// medium.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace tarnvale {

/// A backslash, or a slash, which stands for one.
bool IsSeparator(char c);

/// Whether the name of a program is a path, rather than one to look for.
bool IsPathLanguage(std::string_view name);

/// True when the path can only be a folder's.
bool EndsInSeparator(std::string_view path);

struct PathText {
  /// A capital letter; 0 for the current drive.
  char drive = 0;
  /// It begins with two separators: the name of a machine on the network, where a
  /// system has such names.
  bool begins_twice = false;
  /// As they are written, "." and ".." resolved, never above the drive.
  std::vector<std::string_view> names;
};

/// None for a path that isn't absolute, and one that holds a zero byte. Repeated
/// separators count as one. Refers to the text of `path`.
std::optional<PathText> TakeApart(std::string_view path);

}  // namespace tarnvale
