// A medium that takes names for one that differ.
#pragma once

#include <string>

namespace tarnvale::testing {

/// The environment variable that names the folder which is such a medium, absolute. Looked
/// at with each call; none is without it.
inline constexpr const char* kFoldingMedium = "TARNVALE_FOLDING";

/// Equal for names that it takes for one: those that differ in the case of letters, in
/// points and blanks at their ends, or in whether an accent is a character of its own.
std::string FoldedOnMedium(const std::string& name);

/// How often this process has begun to read a folder, anywhere.
long FoldersRead();

}  // namespace tarnvale::testing
