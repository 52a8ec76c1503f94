// Where the log of the conversation stands.
#include "transfer/frm_winsock.h"

namespace tarnvale {
namespace {

constexpr Size kClient{480, 320};
constexpr Rect kLog{8, 8, 464, 304};

}  // namespace

void LayOut(frmWinsock& window) {
  window.Caption = "Form1";
  window.Frame = WindowFrame::kFixed;
  window.ClientSize = kClient;
  window.txtData.FixedWidth = true;
  // Chosen: what was said isn't edited.
  window.txtData.ReadOnly = true;
  window.txtData.AccessibleName = "Conversation";
  window.Place({{&window.txtData, nullptr, kLog}});
}

}  // namespace tarnvale
