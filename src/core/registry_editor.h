// The command lines of the system's registry editor.
#pragma once

#include <string>

#include "platform/files.h"

namespace tarnvale {

/// The line that exports a branch to a file; the whole registry when `branch` is
/// empty, whatever `sub_branch` says. `sub_branch` is a path below the branch.
/// All texts stand in the line as they are, nothing in them is escaped.
std::string ExportLine(const Path& file, const std::string& branch,
                       const std::string& sub_branch = {});

/// The line that takes the content of an exported file back, without a question.
std::string ImportLine(const Path& file);

}  // namespace tarnvale
