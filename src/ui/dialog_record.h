// What a file dialog's record says, for hosts.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ui/dialogs.h"

namespace tarnvale {

struct FileFilter {
  std::string description;
  std::vector<std::string> patterns;  ///< one at least
};
std::vector<FileFilter> FiltersOf(const FileDialogRecord& record);
/// Which of `count` filters is chosen at the start, counted from 0.
std::size_t FirstFilterOf(const FileDialogRecord& record, std::size_t count);

/// Without a leading point; empty for none.
std::string DefaultExtensionOf(const FileDialogRecord& record);

/// What is offered at the start; both empty for nothing.
struct OfferedFile {
  Path folder;  ///< with its separator, of either kind; empty for none
  std::string name;
};
OfferedFile OfferedBy(const FileDialogRecord& record);

/// The question before a missing file is agreed to; empty where there is none.
std::string QuestionOfMissing(const FileDialogRecord& record, const Path& missing);

/// Fills the buffers. False, and nothing is changed, when the path is empty or doesn't
/// fit.
bool GiveBack(FileDialogRecord& record, const Path& chosen);

}  // namespace tarnvale
