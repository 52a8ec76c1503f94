// The path language and the system's own paths.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace tarnvale {

/// True when a path can hold this name: it has neither a backslash nor a star.
bool CanBeNamed(std::string_view native_name);

/// Splits a native path at its last slash: "/a/b" into "/a" and "b". What is
/// before the slash may be empty.
std::string_view NativeFolderOf(std::string_view native);
std::string_view NativeNameOf(std::string_view native);

/// Drive C: as a native folder.
class DrivePaths {
 public:
  /// `root` is the native folder that C:\ stands for, absolute.
  explicit DrivePaths(std::string root);

  /// The native path that the text of `path` denotes, without looking at the
  /// medium: names as they are written, "." and ".." resolved (never above the
  /// root), repeated backslashes as one, no slash at the end. The root itself is
  /// Root() + "/.". None for another drive, a path that isn't absolute, and one
  /// that holds a zero byte.
  std::optional<std::string> ToNative(const Path& path) const;

  /// The path of an absolute native one, without a backslash at its end. What
  /// lies outside the root has none: it gives "C:".
  Path FromNative(std::string_view native) const;

  /// Without a slash at the end: empty for the root of the file system.
  const std::string& Root() const { return root_; }

 private:
  std::string root_;
};

}  // namespace tarnvale
