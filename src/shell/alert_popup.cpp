#include "shell/alert_popup.h"

#include <utility>

#include "base/numbers.h"

namespace tarnvale {

frmGmail::frmGmail(Machine& machine, const RunState& run, std::function<void()> show_progress)
    : Timer1(machine.loop.Timers(), 1, true),
      Timer2(machine.loop.Timers(), 5000, false),
      Timer3(machine.loop.Timers(), 1, false),
      machine_(machine),
      run_(run) {
  LayOut(*this);
  Timer1.Tick.Listen([this] { SlideIn(); });
  Timer2.Tick.Listen([this] { EndRest(); });
  Timer3.Tick.Listen([this] { SlideOut(); });
  Image1.Clicked.Listen([this] { SlideAway(); });
  lblTitle.Clicked.Listen([this] { SlideAway(); });
  lblText.Clicked.Listen([this] { SlideAway(); });
  Label1.Clicked.Listen([this, show = std::move(show_progress)] {
    show();
    SlideAway();
  });
}

bool frmGmail::Load() {
  slide_.GoHome(machine_.windows);
  return ToNumber(run_.EngineFree.Get()) == 1;
}

// Chosen: a popup that slid out starts again from the edge, so that each alert
// is seen. Its timer would leave it below the screen for good.
void frmGmail::Announce() {
  if (Timer3.Enabled) {
    Timer3.Enabled = false;
    Timer3.WakesLoop = true;
    slide_.ComeUpToHome();
    Timer1.Enabled = true;
  }
  Show();
}

void frmGmail::SlideAway() {
  Timer1.Enabled = false;
  Timer2.Enabled = false;
  Timer3.Enabled = true;
}

void frmGmail::SlideIn() {
  if (!slide_.StepUp()) return;
  Timer1.Enabled = false;
  Timer2.Enabled = true;
}

void frmGmail::EndRest() {
  Timer2.Enabled = false;
  Timer3.Enabled = true;
}

// Required: the timer isn't stopped, and the hidden window goes on moving down.
// It isn't visible, so an idle program doesn't wake for it.
void frmGmail::SlideOut() {
  if (!slide_.StepDown()) return;
  Hide();
  Timer3.WakesLoop = false;
}

}  // namespace tarnvale
