// The layout of the alert: places in pixels at 96 dpi, in tab order.
#include "shell/alert_popup.h"

namespace tarnvale {

// Chosen: the window says nothing by a text, so the parts of its picture have
// names for screen readers, and the one that leads on has a tool tip.
void LayOut(frmGmail& popup) {
  popup.Frame = WindowFrame::kPopup;
  popup.ClientSize = {288, 120};
  popup.Alpha = 255;
  popup.Image1.Picture = "alert";
  popup.Image1.AccessibleName = "A Backup Is About To Start";
  popup.lblTitle.AccessibleName = "Tarnvale";
  popup.lblText.AccessibleName = "Files Are Going To Be Backed Up";
  popup.Label1.AccessibleName = "Show The Backup Progress";
  popup.Label1.ToolTip = "Show The Backup Progress";
  popup.Place({
      {&popup.Image1, nullptr, {0, 0, 288, 120}},
      {&popup.lblTitle, nullptr, {0, 0, 288, 18}},
      {&popup.lblText, nullptr, {0, 18, 288, 70}},
      {&popup.Label1, nullptr, {20, 90, 248, 24}},
  });
}

}  // namespace tarnvale
