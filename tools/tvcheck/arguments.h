// The command line of tvcheck.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

enum class Mode { kBrenlow, kFennick, kTolvern };

/// Native paths, as they were given.
struct Request {
  bool help = false;
  bool version = false;
  std::string settings;      ///< empty: the one that the pointer file leads to
  std::optional<Mode> mode;  ///< none: the settings file's
  bool contents = false;
  bool archive = false;
  std::string archive_file;  ///< empty: the one of automatic compression
  bool json = false;
};

/// Raises UsageError.
Request ParseArguments(const std::vector<std::string>& arguments);

extern const char* const kHelpText;

}  // namespace tarnvale
