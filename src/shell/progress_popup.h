// The popup that follows a run: the copy, then the compression.
#pragma once

#include "core/hooks.h"
#include "core/run_state.h"
#include "kit/progress_bar.h"
#include "settings/backup_settings.h"
#include "shell/popup_slide.h"
#include "ui/controls.h"
#include "ui/machine.h"
#include "ui/timer.h"
#include "ui/window.h"

namespace tarnvale {

/// It reads what it shows and changes nothing. Loaded unseen, it slides in
/// unseen, and is in its place when it is shown.
class Progress : public Window {
 public:
  /// `stages` reports the compression and the transfer.
  Progress(Machine& machine, const BackupSettings& settings, const RunState& run,
           const StageHooks& stages);

  /// Places the window below the screen's edge, from where it slides in.
  void Load();

  /// Shows it without waiting; one that slid out slides in once more.
  void CallUp();

  const PopupSlide& Slide() const { return slide_; }

  // The face.
  PictureBox Backdrop;                   ///< The ground, with the emblem.
  Label TitleLabel{TextRole::kHeading};  ///< The title.
  PictureBox Image2;                     ///< The closing cross.
  Label Label1;                          ///< What the run is doing.
  XP_ProgressBar Bar;                    ///< How far it got.

  // The timers.
  Timer Timer1;  ///< Slides in.
  Timer Timer2;  ///< Nothing.
  Timer Timer3;  ///< Slides out.
  Timer Timer4;  ///< Follows the copy.
  Timer Timer5;  ///< Follows compression and upload.

 private:
  bool IsBarFull() const { return Bar.Value == Bar.Max.Get(); }
  bool HasTransferEnded() const;

  // One tick each.
  void SlideIn();
  void SlideOut();
  void FollowCopy();
  void FollowLaterStages();

  Machine& machine_;
  const BackupSettings& settings_;
  const RunState& run_;
  const StageHooks& stages_;
  PopupSlide slide_{*this};
};

/// Gives every control of the popup its place and its texts.
void LayOut(Progress& popup);

}  // namespace tarnvale
