// The list of what the user has chosen to back up.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "ui/row_list.h"

namespace tarnvale {

/// The ending of a whole-folder item. No file name can hold a "*"; the run
/// knows the item by its five "+" signs.
inline constexpr std::string_view kFolderMarker = "*+++++*";

/// An ordered list of item texts, of three kinds:
///   C:\Data\a.txt        one file
///   C:\Data\*.*          the files of a folder
///   C:\Data\*+++++*      a folder with all that is in it
class BackupList : public RowList {
 public:
  /// True when an entry equals the text exactly (case counts).
  bool IsInBackupList(std::string_view text) const {
    return std::find(Rows().begin(), Rows().end(), text) != Rows().end();
  }
};

}  // namespace tarnvale
