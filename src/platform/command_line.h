// Command lines as texts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// The words of a command line. Blanks part words; double quotes hold a word
/// together and are dropped, and one that isn't closed runs to the end. Nothing
/// else has a meaning, so that a folder may end in a backslash before a quote.
std::vector<std::string> WordsOf(std::string_view command_line);

}  // namespace tarnvale
