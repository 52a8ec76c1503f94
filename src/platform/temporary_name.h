// Names of copies in work, which all hosts give and know alike: a medium may be carried
// from one system to another.
#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// ".tarnvale-MARK-SLOT.part". Both are 16 hexadecimal digits: the mark stands for
/// machine, user and state folder, the slot for one process.
std::string TemporaryName(std::string_view mark, std::string_view slot);

/// True for every name that copies in work are given, whoever made them.
bool IsTemporaryName(std::string_view name);

/// In a folder whose copies may not have reached their medium; see FileSystem::BeginCopies.
inline constexpr std::string_view kUnflushedName = ".tarnvale-unflushed";

/// True for all names that are the program's own: no listing contains them.
inline bool IsOwnName(std::string_view name) {
  return IsTemporaryName(name) || name == kUnflushedName;
}

/// Both empty for any other name.
std::string_view MarkOfTemporary(std::string_view name);
std::string_view SlotOfTemporary(std::string_view name);

}  // namespace tarnvale
