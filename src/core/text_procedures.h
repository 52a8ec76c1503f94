// Small public text procedures.
#pragma once

#include <cstdint>
#include <string>

namespace tarnvale {

/// Replaces `search` in `text`, in place, and returns the result. The scan goes
/// on right behind the start of a match, in the changed text, and stops at the
/// length that the text had at first: what a replacement adds is scanned too,
/// and a match beyond the old length stays. An empty `search` matches at every
/// position. Comparison is exact.
std::string pReplace(std::string& text, const std::string& search, const std::string& replacement);

/// One component of a path, counted from 0. A backslash that ends the
/// component stays in the result. An empty path gives an empty text; "Default
/// Folder" when the component would begin at or behind the last character.
/// Raises 6 when the path has fewer backslashes than `level` and none at its
/// end.
std::string GetFolder(const std::string& path, std::int16_t level);

}  // namespace tarnvale
