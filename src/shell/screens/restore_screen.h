// The screen that copies a backup back.
#pragma once

#include "core/engine.h"
#include "kit/chameleon_button.h"
#include "kit/group_box.h"
#include "kit/progress_bar.h"
#include "ui/controls.h"
#include "ui/window.h"

namespace tarnvale {

class RestoreScreen {
 public:
  RestoreScreen(Window& window, Engine& engine);

  /// Gives the controls their places in the window and their texts.
  void LayOut();

  /// Takes over the folders that are chosen in the trees.
  void FollowTrees();

  // The restore screen.
  GroupBox GroupBox15;
  Label RestoreSourceLabel{TextRole::kStrong};
  PictureBox Picture2;           ///< Holds the tree.
  FolderTree RestoreSourceTree;  ///< In Picture2.
  TextBox Text27;                ///< The backup to restore.
  Label RestoreTargetLabel{TextRole::kStrong};
  PictureBox Picture3;           ///< Holds the tree.
  FolderTree RestoreTargetTree;  ///< In Picture3.
  TextBox Text28;                ///< Where to restore it.
  Label DeviceNote;
  Label RestoreStatusLabel{TextRole::kStrong};
  XP_ProgressBar XP_ProgressBar3;    ///< Moves while a backup is restored.
  chameleonButton chameleonButton8;  ///< Restores.

 private:
  void AdvanceBar();
  void Restore();

  Window& window_;
  Engine& engine_;
};

}  // namespace tarnvale
