#include "shell/progress_popup.h"

#include <string>

#include "base/failure.h"
#include "base/numbers.h"

namespace tarnvale {
namespace {

// The maximum of both bars that this window mirrors.
constexpr int kFull = 100;

constexpr const char* kIdle = "Backup Process Is Currently Idle";

}  // namespace

Progress::Progress(Machine& machine, const BackupSettings& settings, const RunState& run,
                   const StageHooks& stages)
    : Timer1(machine.loop.Timers(), 1, true),
      Timer2(machine.loop.Timers(), 7000, false),
      Timer3(machine.loop.Timers(), 1, false),
      Timer4(machine.loop.Timers(), 1, true),
      Timer5(machine.loop.Timers(), 100, false),
      machine_(machine),
      settings_(settings),
      run_(run),
      stages_(stages) {
  LayOut(*this);
  Timer1.Tick.Listen([this] { SlideIn(); });
  Timer3.Tick.Listen([this] { SlideOut(); });
  Timer4.Tick.Listen([this] { FollowCopy(); });
  Timer5.Tick.Listen([this] { FollowLaterStages(); });
  // Required: the other timers go on. A click while the window still slides in
  // makes it hover: it goes up and down by one step for ever.
  Image2.Clicked.Listen([this] { Timer3.Enabled = true; });
}

void Progress::Load() {
  slide_.GoHome(machine_.windows);
  Label1.Caption = kIdle;
}

// Chosen: a window that was closed, or is on its way out, slides in again.
// Shown where it is, it would stand below the screen.
void Progress::CallUp() {
  if (Timer3.Enabled || slide_.IsOut()) {
    Timer3.Enabled = false;
    slide_.ComeUpToHome();
    Timer1.Enabled = true;
  }
  Show();
}

void Progress::SlideIn() {
  if (slide_.StepUp()) Timer1.Enabled = false;
}

void Progress::SlideOut() {
  if (!slide_.StepDown()) return;
  Timer3.Enabled = false;
  Hide();
}

void Progress::FollowCopy() {
  SetIfOther(Bar.Value, run_.CopyBar.Get());
  Bar.Max = kFull;
  if (!IsBarFull() && Bar.Value != 0) Label1.Caption = "Backup Process Is Currently Running";
  if (Bar.Value == 0) Label1.Caption = kIdle;
  if (IsBarFull()) {
    Label1.Caption = "Backup Has Been Completed";
    if (settings_.AutoCompress) Timer5.Enabled = true;
    Timer4.Enabled = false;
  }
}

// Required: the second and the third text stand alone in the test, without a
// comparison. As operands they are turned into numbers, which fails.
bool Progress::HasTransferEnded() const {
  const std::string status = stages_.ConnectionStatus ? stages_.ConnectionStatus() : std::string();
  const bool is_complete = status == "File Transfer Complete";
  const bool is_canceled = ToNumber("File Transfer Canceled") != 0;
  const bool has_failed = ToNumber("File Transfer Failed") != 0;
  return is_complete || is_canceled || has_failed;
}

void Progress::FollowLaterStages() {
  PassedOver pass;
  pass.Step([&] { Bar.Max = kFull; });
  pass.Step([&] {
    SetIfOther(Bar.Value, stages_.CompressionProgress ? stages_.CompressionProgress() : 0);
  });
  if (!IsBarFull()) Label1.Caption = "Compressing The Backup File";
  if (!settings_.AutoUpload && IsBarFull()) {
    Label1.Caption = "Tarnvale Has Completed";
    Timer5.Enabled = false;
  }
  if (settings_.AutoUpload && IsBarFull()) Label1.Caption = "Uploading File To FTP Server";
  // Required: the test counts as true on every tick, so the window doesn't wait
  // for the transfer.
  if (settings_.AutoUpload && pass.Test([&] { return HasTransferEnded(); })) {
    if (IsBarFull()) {
      Label1.Caption = "Backup Has Been Completed";
      Timer5.Enabled = false;
    }
  }
}

}  // namespace tarnvale
