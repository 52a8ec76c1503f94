// The command line of tvz.
#pragma once

#include <string>
#include <vector>

namespace tarnvale {

enum class Command { kHelp, kVersion, kCreate, kExtract, kList, kTest, kCat };

/// Native paths, as they were given.
struct Request {
  Command command = Command::kHelp;
  std::string archive;
  std::string folder = ".";  ///< to pack, or to unpack to
  std::string entry;         ///< kCat
  bool allow_outside = false;
};

/// Raises UsageError.
Request ParseArguments(const std::vector<std::string>& arguments);

extern const char* const kHelpText;

}  // namespace tarnvale
