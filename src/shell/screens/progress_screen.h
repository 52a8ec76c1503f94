// The screen that follows a run.
#pragma once

#include "core/engine.h"
#include "kit/group_box.h"
#include "kit/progress_bar.h"
#include "shell/tool_hooks.h"
#include "ui/controls.h"
#include "ui/window.h"

namespace tarnvale {

class ProgressScreen {
 public:
  ProgressScreen(Window& window, Engine& engine, const ToolHooks& tools);

  /// Gives the controls their places in the window and their texts.
  void LayOut();

  // The progress screen.
  GroupBox GroupBox3;
  Label FromLabel{TextRole::kStrong};
  Label Label11;  ///< SourceCaption.
  Label ToLabel{TextRole::kStrong};
  Label Label13;  ///< TargetCaption.
  Label ProgressLabel{TextRole::kStrong};
  Label Label14;  ///< StatusCaption.
  Label FileProgressLabel{TextRole::kStrong};
  XP_ProgressBar XP_ProgressBar1;  ///< CopyBar.
  Label TotalProgressLabel{TextRole::kStrong};
  XP_ProgressBar XP_ProgressBar2;  ///< FileBar.
  Label OptionsLabel{TextRole::kStrong};
  Label Label50{TextRole::kLink};  ///< Opens the log.
  Label Label47{TextRole::kLink};  ///< Opens the compressor.

 private:
  Window& window_;
};

}  // namespace tarnvale
