// The commands that add to the backup list and remove from it.
#pragma once

#include <string>

#include "settings/backup_list.h"
#include "ui/controls.h"
#include "ui/message_boxes.h"
#include "ui/window.h"

namespace tarnvale {

/// The user's side of the list: the folder chosen in the tree, the pane with
/// its files, and the list box.
struct ListFields {
  Property<std::string>& Folder;
  FileList& Pane;
  ListBox& List;
};

class ListCommands {
 public:
  ListCommands(MessageBoxes& boxes, Desktop& desktop, BackupList& entries)
      : boxes_(boxes), desktop_(desktop), entries_(entries) {}

  enum class Add { kSelectedFiles, kFolderContents, kWholeFolder };

  /// Appends what is chosen, each item that isn't there yet; for one that is, a
  /// box. A failure is shown in a box and ends the command.
  void AddToBackupList(const ListFields& fields, Add what);

  /// Removes all selected rows. While a removal fails, a box says so and it is
  /// tried again.
  void RemoveSelected(const ListFields& fields);

 private:
  void AddSelectedFiles(const ListFields& fields, const std::string& folder);
  void AddItem(const std::string& item);

  MessageBoxes& boxes_;
  Desktop& desktop_;
  BackupList& entries_;
};

}  // namespace tarnvale
