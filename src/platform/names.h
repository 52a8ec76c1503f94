// Names in folders: their order, and the patterns that listings go by.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace tarnvale {

/// Orders names without regard to the case of ASCII letters; names that differ in
/// nothing else by their bytes.
bool ComesBefore(std::string_view a, std::string_view b);

void SortNames(std::vector<std::string>& names);
void SortContents(FolderContents& contents);

/// Whether a name matches a pattern: "*" any run, "?" any one character, "*.*"
/// everything, and an empty pattern too. Both in the form that FileSystem::FoldCase
/// gives.
bool MatchesPattern(std::string_view name, std::string_view pattern);

}  // namespace tarnvale
