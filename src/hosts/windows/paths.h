// The path language and the system's own paths.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace tarnvale {

/// True when a medium can have something by this name, and native paths lead there: no
/// wildcard, stream or control character, at most 255 units.
bool CanBeFound(std::wstring_view name);

/// True when a path of the logic may make a file of this name: it is the name of no
/// device either, which hardly another program would find again.
bool CanBeNamed(std::wstring_view name);

/// The drives of this machine, and its network.
class DrivePaths {
 public:
  /// `root` is the native folder that C:\ stands for, the only drive then; empty for the
  /// drives as they are.
  explicit DrivePaths(std::wstring root = {});

  /// The native path that the text of `path` denotes, without looking at the medium, in
  /// the form that has no limit of 260 characters and means names as they are written.
  /// A drive's root ends in a backslash. None for what isn't absolute or no path can be.
  std::optional<std::wstring> ToNative(const Path& path) const;

  std::vector<Drive> List() const;

  /// The path of a native one, without a backslash at its end.
  Path FromNative(std::wstring_view native) const;

 private:
  std::wstring root_;
};

/// A native path as the desktop and the starting of programs take it.
std::wstring WithoutPrefix(std::wstring_view native);

/// Splits a native path at its last backslash: "\\?\C:\a\b" into "\\?\C:\a" and "b". The
/// folder of what lies in a drive's root ends in a backslash; a root itself has no name.
std::wstring NativeFolderOf(std::wstring_view native);
std::wstring_view NativeNameOf(std::wstring_view native);

/// A form of a native path that is equal for those which differ in case alone.
std::wstring FoldedPath(std::wstring_view native);

/// A native path of a folder and a name in it.
std::wstring Joined(std::wstring_view folder, std::wstring_view name);

}  // namespace tarnvale
