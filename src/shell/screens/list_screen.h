// The screen on which the backup list is made.
#pragma once

#include "core/engine.h"
#include "kit/chameleon_button.h"
#include "kit/group_box.h"
#include "ui/controls.h"
#include "ui/window.h"

namespace tarnvale {

class ListScreen {
 public:
  ListScreen(Window& window, Engine& engine);

  /// Gives the controls their places in the window and their texts.
  void LayOut();

  bool ListHasFocus() const { return list_has_focus_; }
  void RemoveSelectedItems();
  /// Takes over the folder that is chosen in the tree.
  void FollowTree();

  // The list screen.
  GroupBox GroupBox1;
  PictureBox Picture1;       ///< Holds the tree.
  FolderTree ListTree;       ///< In Picture1.
  FileList File1;            ///< The files of the folder.
  CheckButton Check2;        ///< Filters by Text2.
  TextBox Text2;             ///< What a shown name must contain.
  CheckButton Check1;        ///< Shows hidden files.
  CheckButton Check3;        ///< Shows system files.
  CheckButton Check4;        ///< "Show Read-Only". Required: nothing reads it.
  CheckButton CheckBox3;     ///< A folder is added with its sub-folders.
  chameleonButton Command4;  ///< Adds the folder of the tree.
  chameleonButton Command5;  ///< Adds the selected files.
  Label ListHeading{TextRole::kStrong};
  ListBox List1;             ///< Entries.
  chameleonButton Command1;  ///< Removes the selected items.
  TextBox Text3;             ///< Hidden: the folder chosen in the tree.

 private:
  void AddChosenFolder();
  void AddChosenFiles();
  ListFields Fields() { return {Text3.Text.Target(), File1, List1}; }

  void MirrorPaneFilters();

  Window& window_;
  Engine& engine_;
  bool list_has_focus_ = false;
};

}  // namespace tarnvale
