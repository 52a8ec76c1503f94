// How a popup slides in at the lower right corner of the screen, and out again.
#pragma once

#include "ui/window.h"

namespace tarnvale {

/// Moves one window of frame kPopup up and down by fixed steps.
class PopupSlide {
 public:
  /// `window` must have its size and outlive the slide.
  explicit PopupSlide(Window& window) : window_(window) {}

  /// Takes home from the screen and goes there: at its right edge, just below
  /// its lower one.
  void GoHome(WindowHost& windows);

  /// One step. True when the whole window is above home now.
  bool StepUp();
  /// One step. True when the window is exactly at home now; further down it goes
  /// on, and stops at the end of what a whole number holds.
  bool StepDown();

  /// Nothing of the window is above home.
  bool IsOut() const { return window_.TopTwips >= home_top_twips_; }
  /// Brings a window that went further down back home.
  void ComeUpToHome();

  int HomeLeftTwips() const { return home_left_twips_; }
  int HomeTopTwips() const { return home_top_twips_; }

 private:
  int HeightTwips() const { return window_.ClientSize.height_px * kTwipsPerPixel; }

  Window& window_;
  int home_left_twips_ = 0;
  int home_top_twips_ = 0;
};

}  // namespace tarnvale
