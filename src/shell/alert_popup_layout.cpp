// Where the controls of the alert stand. Places are pixels at 96 dpi.
#include <utility>

#include "shell/alert_popup.h"

namespace tarnvale {

// Chosen: the window says nothing by a text, so the parts of its picture have
// names for those who hear it, and the one that leads on has a tool tip.
void LayOut(frmGmail& popup, const EmblemPainter& emblem) {
  popup.Frame = WindowFrame::kPopup;
  popup.ClientSize = kAlertSize;
  popup.Alpha = 255;
  PicturePair picture = AlertPicture(emblem);
  popup.Image1.Picture = std::move(picture.at_1x);
  popup.Image1.PictureAt2x = std::move(picture.at_2x);
  popup.Image1.AccessibleName = "A Backup Is About To Start";
  popup.lblTitle.AccessibleName = "Tarnvale";
  popup.lblText.AccessibleName = "Files Are Going To Be Backed Up";
  popup.Label1.AccessibleName = "Show The Backup Progress";
  popup.Label1.ToolTip = "Show The Backup Progress";
  popup.Place({
      {&popup.Image1, nullptr, {0, 0, kAlertSize.width_px, kAlertSize.height_px}},
      {&popup.lblTitle, nullptr, kAlertTitlePart},
      {&popup.lblText, nullptr, kAlertMiddlePart},
      {&popup.Label1, nullptr, kAlertBarPart},
  });
}

}  // namespace tarnvale
