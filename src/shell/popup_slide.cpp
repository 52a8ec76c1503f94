#include "shell/popup_slide.h"

#include <algorithm>
#include <limits>

namespace tarnvale {
namespace {

constexpr int kStepTwips = 30;

}  // namespace

void PopupSlide::GoHome(WindowHost& windows) {
  home_left_twips_ = windows.ScreenWidthTwips() - window_.ClientSize.width_px * kTwipsPerPixel;
  home_top_twips_ = windows.ScreenHeightTwips();
  window_.LeftTwips = home_left_twips_;
  window_.TopTwips = home_top_twips_;
}

bool PopupSlide::StepUp() {
  window_.TopTwips = window_.TopTwips - kStepTwips;
  return home_top_twips_ - HeightTwips() >= window_.TopTwips;
}

bool PopupSlide::StepDown() {
  // A hidden popup goes down for ever. Far below the screen it makes no
  // difference that it comes to rest at last.
  constexpr int kLowest = std::numeric_limits<int>::max() - kStepTwips;
  window_.TopTwips = std::min(window_.TopTwips.Get(), kLowest) + kStepTwips;
  return window_.TopTwips == home_top_twips_;
}

void PopupSlide::ComeUpToHome() {
  window_.TopTwips = std::min(window_.TopTwips.Get(), home_top_twips_);
}

}  // namespace tarnvale
