// Where the controls of the progress window stand, and what they say. Places are
// pixels at 96 dpi.
#include <utility>

#include "shell/progress_popup.h"

namespace tarnvale {
namespace {

void Show(PictureBox& box, PicturePair picture) {
  box.Picture = std::move(picture.at_1x);
  box.PictureAt2x = std::move(picture.at_2x);
}

}  // namespace

void LayOut(Progress& popup, const EmblemPainter& emblem) {
  popup.Frame = WindowFrame::kPopup;
  popup.ClientSize = kProgressSize;
  popup.Alpha = 250;
  popup.Caption = "Current Backup Progress";
  Show(popup.Backdrop, ProgressBackdrop(emblem));
  Show(popup.Image2, ClosingCross());
  popup.TitleLabel.Caption = "Tarnvale Progress";
  popup.Bar.Scrolling = 9;
  popup.Backdrop.AccessibleName = "Current Backup Progress";
  popup.TitleLabel.AccessibleName = "Tarnvale Progress";
  popup.Image2.AccessibleName = "Close";
  popup.Image2.Pointer = PointerShape::kHand;
  popup.Bar.AccessibleName = "Backup Progress";
  popup.Place({
      {&popup.Backdrop, nullptr, {0, 0, kProgressSize.width_px, kProgressSize.height_px}},
      {&popup.TitleLabel, nullptr, {46, 16, 210, 24}},
      {&popup.Image2, nullptr, {270, 16, kCrossSize.width_px, kCrossSize.height_px}},
      {&popup.Label1, nullptr, {16, 48, 272, 20}},
      {&popup.Bar, nullptr, {16, 74, 272, 22}},
  });
}

}  // namespace tarnvale
