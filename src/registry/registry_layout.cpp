// The layout of the registry window: places in pixels at 96 dpi, in tab order.
#include "registry/registry.h"

namespace tarnvale {
namespace {

constexpr Size kClient{452, 336};
constexpr Rect kFrame{12, 10, 428, 314};

}  // namespace

void LayOut(registry& w) {
  w.Caption = "Registry Backup Maker";
  w.Frame = WindowFrame::kFixed;
  w.ClientSize = kClient;
  w.GroupBox1.Caption = "Registry Backup";
  w.Label2.Caption = "Registry Branch Selection";
  w.Label3.Caption = "Registry Branch:";
  w.Combo1.AccessibleName = "Registry Branch";
  w.Label4.Caption = "Registry Sub Branch:";
  w.Text2.AccessibleName = "Registry Sub Branch";
  w.Label5.Caption = " (Not Required / Expert Users Only)";
  w.Label1.Caption = "Registry Backup Location";
  w.Text3.AccessibleName = "Registry Backup Location";
  w.chameleonButton1.Caption = "Select Registry Backup Location";
  w.chameleonButton1.ButtonType = 3;
  w.Command1.Caption = "Backup The Selected Registry Branch";
  w.Command1.ButtonType = 3;
  // As the first tick finds them.
  w.Text2.Enabled = false;
  w.Command1.Enabled = false;

  Control* frame = &w.GroupBox1;
  w.Place({
      {frame, nullptr, kFrame},
      {&w.Label2, frame, {16, 28, 396, 18}},
      {&w.Label3, frame, {16, 57, 140, 18}},
      {&w.Combo1, frame, {164, 54, 248, 24}},
      {&w.Label4, frame, {16, 89, 140, 18}},
      {&w.Text2, frame, {164, 86, 248, 24}},
      {&w.Label5, frame, {164, 114, 248, 18}},
      {&w.Label1, frame, {16, 156, 396, 18}},
      {&w.Text3, frame, {16, 180, 396, 24}},
      {&w.chameleonButton1, frame, {16, 212, 396, 28}},
      {&w.Command1, frame, {16, 270, 396, 28}},
  });
}

}  // namespace tarnvale
