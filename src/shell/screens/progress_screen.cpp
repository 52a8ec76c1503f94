#include "shell/screens/progress_screen.h"

#include "shell/screens/screen.h"

namespace tarnvale {

ProgressScreen::ProgressScreen(Window& window, Engine& engine, const ToolHooks& tools)
    : Label11(TextRole::kValue, engine.run.SourceCaption),
      Label13(TextRole::kValue, engine.run.TargetCaption),
      Label14(TextRole::kValue, engine.run.StatusCaption),
      XP_ProgressBar1(engine.run.CopyBar),
      XP_ProgressBar2(engine.run.FileBar),
      window_(window) {
  Label50.Clicked.Listen([&engine] { engine.OpenLog(); });
  Label47.Clicked.Listen([&tools] { CallHook(tools.ShowCompressor); });
}

void ProgressScreen::LayOut() {
  GroupBox3.Caption = "Backup Progress";
  FromLabel.Caption = "Current Backup From:";
  ToLabel.Caption = "Current Backup To:";
  ProgressLabel.Caption = "Current Backup Progress:";
  FileProgressLabel.Caption = "Current File Progress:";
  XP_ProgressBar1.AccessibleName = "Current File Progress";
  TotalProgressLabel.Caption = "Total Backup Progress:";
  XP_ProgressBar2.AccessibleName = "Total Backup Progress";
  OptionsLabel.Caption = "More Options:";
  Label50.Caption = "Read Log File To Check For Backup Errors And Success";
  Label47.Caption = "Tarnvale Compressor";
  XP_ProgressBar1.Scrolling = 9;
  XP_ProgressBar2.Scrolling = 9;

  Control* screen = &GroupBox3;
  window_.Place({
      {screen, nullptr, kScreen},
      {&FromLabel, screen, {16, 32, 616, 20}},
      {&Label11, screen, {16, 56, 616, 20}},
      {&ToLabel, screen, {16, 92, 616, 20}},
      {&Label13, screen, {16, 116, 616, 20}},
      {&ProgressLabel, screen, {16, 152, 616, 20}},
      {&Label14, screen, {16, 176, 616, 20}},
      {&FileProgressLabel, screen, {16, 224, 616, 20}},
      {&XP_ProgressBar1, screen, {16, 250, 616, 22}},
      {&TotalProgressLabel, screen, {16, 292, 616, 20}},
      {&XP_ProgressBar2, screen, {16, 318, 616, 22}},
      {&OptionsLabel, screen, {16, 372, 616, 20}},
      {&Label50, screen, {24, 398, 400, 20}},
      {&Label47, screen, {24, 424, 400, 20}},
  });
}

}  // namespace tarnvale
