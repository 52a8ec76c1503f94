#include "core/list_commands.h"

#include "base/numbers.h"
#include "base/text.h"

namespace tarnvale {

void ListCommands::AddToBackupList(const ListFields& fields, Add what) {
  desktop_.Pointer = PointerShape::kHourglass;
  try {
    const std::string folder = WithBackslash(fields.Folder.Get());
    switch (what) {
      case Add::kSelectedFiles:
        AddSelectedFiles(fields, folder);
        break;
      case Add::kFolderContents:
        AddItem(folder + "*.*");
        break;
      case Add::kWholeFolder:
        AddItem(folder + std::string(kFolderMarker));
        break;
    }
  } catch (const ProgramError& error) {
    boxes_.Show(
        {.text = ToText(error.Number()) + "\n" + error.Description(), .icon = BoxIcon::kStop});
  }
  // Chosen: the pointer comes back after a failure too.
  desktop_.Pointer = PointerShape::kDefault;
}

void ListCommands::AddSelectedFiles(const ListFields& fields, const std::string& folder) {
  // Boxes yield, and the pane may be read anew meanwhile: the names first.
  std::vector<std::string> names;
  for (std::size_t row = 0; row < fields.Pane.Rows().size(); ++row) {
    if (fields.Pane.IsSelected(row)) names.push_back(fields.Pane.Rows()[row]);
  }
  if (names.size() == 1) {
    // Required: the pane's current file, which is the one selected last.
    AddItem(folder + fields.Pane.FileName());
    return;
  }
  for (const std::string& name : names) AddItem(folder + name);
}

void ListCommands::AddItem(const std::string& item) {
  if (!entries_.IsInBackupList(item)) {
    entries_.Append(item);
    return;
  }
  boxes_.Show(
      {.text = "Item Is Already In Your Backup List: \n\n" + item, .icon = BoxIcon::kInformation});
}

void ListCommands::RemoveSelected(const ListFields& fields) {
  for (std::size_t left = entries_.Count(); left > 0; --left) {
    const std::size_t row = left - 1;
    for (;;) {
      try {
        if (fields.List.IsSelected(row)) entries_.RemoveAt(row);
        break;
      } catch (const ProgramError& error) {
        const std::string text = error.Number() == kDeviceUnavailable
                                     ? "The Selected Drive Is Not Currently Available."
                                     : ToText(error.Number()) + "\n" + error.Description();
        boxes_.Show({.text = text, .icon = BoxIcon::kStop});
      }
    }
  }
}

}  // namespace tarnvale
