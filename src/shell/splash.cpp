#include "shell/splash.h"

#include <utility>

#include "base/numbers.h"
#include "core/hooks.h"

namespace tarnvale {
namespace {

constexpr int kShownMs = 7000;

}  // namespace

splash::splash(Machine& machine, const BackupSettings& settings, SplashHooks hooks)
    : Timer1(machine.loop.Timers(), kShownMs, false),
      machine_(machine),
      settings_(settings),
      hooks_(std::move(hooks)) {
  Frame = WindowFrame::kPlain;
  ClientSize = {440, 260};
  Caption = "Form2";
  InTaskBar = false;
  Scenery.Picture = "splash";
  NameLabel.Caption = "Tarnvale";
  Place({{&Scenery, nullptr, {0, 0, 440, 260}}, {&NameLabel, &Scenery, {132, 44, 270, 56}}});
  Timer1.Tick.Listen([this] { Decide(); });
}

void splash::Start() {
  Load();
  Show();
}

void splash::Load() {
  Visible = false;
  machine_.processes.StartProgram(machine_.files.ProgramFolder() + "\\U3-Data.exe");
  Timer1.Enabled = true;
}

// Required: the mark is converted anew for each test, and a conversion that
// fails counts as true. So with no mark at all, as in the very first start, both
// windows come up; with one that is neither 1 nor 0 this one stays.
void splash::Decide() {
  PassedOver pass;
  if (pass.Test([&] { return ToNumber(settings_.WizardMark.Get()) == 1; })) {
    Hide();
    pass.Step([&] { CallHook(hooks_.ShowMainWindow); });
    Timer1.Enabled = false;
  }
  if (pass.Test([&] { return ToNumber(settings_.WizardMark.Get()) == 0; })) {
    Hide();
    pass.Step([&] { CallHook(hooks_.ShowAgreement); });
    Timer1.Enabled = false;
  }
}

}  // namespace tarnvale
