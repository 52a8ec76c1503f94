#include "shell/alerts.h"

namespace tarnvale {

void Popups::ConnectStages() {
  engine_.stages.ShowAlert = [this] { cAlert(*this).Gmail(); };
  // Each is a use of the window and so loads it.
  engine_.stages.ResetProgressWindow = [this] { ProgressPopup().Bar.Value = 0; };
  engine_.stages.FollowCopy = [this] { ProgressPopup().Timer4.Enabled = true; };
}

bool Popups::LoadAlert() {
  Machine& machine = engine_.machine();
  alert_ =
      std::make_unique<frmGmail>(machine, engine_.run, [this] { cAlert(*this).ProgressWindow(); });
  machine.windows.Adopt(*alert_);
  return alert_->Load();
}

Progress& Popups::ProgressPopup() {
  if (progress_) return *progress_;
  Machine& machine = engine_.machine();
  progress_ = std::make_unique<Progress>(machine, engine_.settings, engine_.run, engine_.stages);
  machine.windows.Adopt(*progress_);
  progress_->Load();
  return *progress_;
}

void cAlert::Gmail() {
  if (popups_.IsAlertLoaded() || popups_.LoadAlert()) popups_.Alert().Announce();
}

void cAlert::ProgressWindow() {
  popups_.ProgressPopup().CallUp();
}

}  // namespace tarnvale
