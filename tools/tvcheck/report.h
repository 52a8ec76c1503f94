// What a check prints.
#pragma once

#include <string>

#include "tvcheck/findings.h"

namespace tarnvale {

/// What was compared with what.
struct Subject {
  std::string settings;  ///< native
  std::string mode;
  std::string copies;  ///< native: the storage location, or an archive
};

/// A line for each file that isn't the same, then a table. Does nothing to a
/// terminal, whatever the names are.
std::string TextReport(const Subject& subject, const Findings& findings);

/// The same as one JSON object. What isn't UTF-8 in a name is the replacement
/// character.
std::string JsonReport(const Subject& subject, const Findings& findings);

}  // namespace tarnvale
