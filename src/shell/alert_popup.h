// The popup that announces a run. It slides in at the lower right corner of the
// screen, rests for five seconds and slides out again.
#pragma once

#include <functional>

#include "core/run_state.h"
#include "shell/popup_slide.h"
#include "ui/controls.h"
#include "ui/machine.h"
#include "ui/timer.h"
#include "ui/window.h"

namespace tarnvale {

class frmGmail : public Window {
 public:
  /// `show_progress` shows the other popup.
  frmGmail(Machine& machine, const RunState& run, std::function<void()> show_progress);

  /// Places the window below the screen's edge, from where it slides in. True
  /// when it may be shown; false when it stays hidden, as a run couldn't start.
  bool Load();

  /// Shows it without waiting; one that slid out slides in once more.
  void Announce();

  const PopupSlide& Slide() const { return slide_; }

  // The face. It says all by its picture: the labels have no text.
  PictureBox Image1;              ///< The picture, over the whole window; sends it away.
  Label lblTitle;                 ///< Upper part of the picture; sends it away.
  Label lblText;                  ///< Middle of the picture; sends it away.
  Label Label1{TextRole::kLink};  ///< The bar in the picture; shows the progress window.

  // The timers.
  Timer Timer1;  ///< Slides in.
  Timer Timer2;  ///< The rest.
  Timer Timer3;  ///< Slides out.

 private:
  void SlideAway();

  // One tick each.
  void SlideIn();
  void EndRest();
  void SlideOut();

  Machine& machine_;
  const RunState& run_;
  PopupSlide slide_{*this};
};

/// Gives every control of the popup its place.
void LayOut(frmGmail& popup);

}  // namespace tarnvale
