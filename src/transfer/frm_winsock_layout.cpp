// The place of the log of the conversation: wide enough for the rule in a report.
#include "transfer/frm_winsock.h"

namespace tarnvale {
namespace {

constexpr Rect kLog{8, 8, 688, 384};

}  // namespace

void LayOut(frmWinsock& window) {
  window.Caption = "Form1";
  window.Frame = WindowFrame::kFixed;
  window.ClientSize = Size{704, 400};
  window.txtData.FixedWidth = true;
  // Chosen: what was said isn't edited.
  window.txtData.ReadOnly = true;
  window.txtData.AccessibleName = "Conversation";
  window.Place({{&window.txtData, nullptr, kLog}});
}

}  // namespace tarnvale
