// The screen on which the place of the copies is chosen.
#pragma once

#include "core/engine.h"
#include "kit/chameleon_button.h"
#include "kit/group_box.h"
#include "ui/controls.h"
#include "ui/window.h"

namespace tarnvale {

class StorageScreen {
 public:
  StorageScreen(Window& window, Engine& engine);

  /// Gives the controls their places in the window and their texts.
  void LayOut();

  // The storage screen.
  GroupBox GroupBox2;
  Label StorageHeading{TextRole::kStrong};
  PictureBox picBrowse;    ///< Holds the tree.
  FolderTree StorageTree;  ///< In picBrowse.
  Label PathLabel;
  TextBox Text1;                     ///< DestinationDir.
  chameleonButton chameleonButton1;  ///< Takes the folder of the tree.

 private:
  void SelectLocation();

  Window& window_;
  Engine& engine_;
};

}  // namespace tarnvale
