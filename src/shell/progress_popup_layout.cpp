// The layout of the progress window: places in pixels at 96 dpi, in tab order.
#include "shell/progress_popup.h"

namespace tarnvale {

void LayOut(Progress& popup) {
  popup.Frame = WindowFrame::kPopup;
  popup.ClientSize = {304, 112};
  popup.Alpha = 250;
  popup.Caption = "Current Backup Progress";
  popup.Backdrop.Picture = "progress";
  popup.Image2.Picture = "cross";
  popup.TitleLabel.Caption = "Tarnvale Progress";
  popup.Bar.Scrolling = 9;
  popup.Backdrop.AccessibleName = "Current Backup Progress";
  popup.TitleLabel.AccessibleName = "Tarnvale Progress";
  popup.Image2.AccessibleName = "Close";
  popup.Image2.Pointer = PointerShape::kHand;
  popup.Bar.AccessibleName = "Backup Progress";
  popup.Place({
      {&popup.Backdrop, nullptr, {0, 0, 304, 112}},
      {&popup.TitleLabel, nullptr, {46, 16, 210, 24}},
      {&popup.Image2, nullptr, {270, 16, 20, 20}},
      {&popup.Label1, nullptr, {16, 48, 272, 20}},
      {&popup.Bar, nullptr, {16, 74, 272, 22}},
  });
}

}  // namespace tarnvale
