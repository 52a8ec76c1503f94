#include "core/engine.h"

#include "base/numbers.h"
#include "core/backup_log.h"
#include "core/check_settings.h"
#include "core/engine_gate.h"

namespace tarnvale {

Engine::Engine(Machine& machine)
    : timers(machine.loop.Timers()),
      scheduler({machine.clock, machine.formats, machine.boxes}, settings, screens, stages,
                {.EngineIsFree = [this] { return EngineIsFree(); },
                 .RequestStart = [this] { RequestStart(); }}),
      list(machine.boxes, machine.desktop, settings.Entries),
      backup(machine, machine.loop, machine.boxes, machine.desktop, settings, run, screens, stages),
      machine_(machine),
      store_(machine, machine.loop, machine.desktop, settings) {
  FillTicks();
}

void Engine::FillTicks() {
  using enum EngineTimer;
  timers.At(kSchedule, [this] { scheduler.Tick(); });
  timers.At(kNextRun, [this] { ShowNextRun(); });
  timers.At(kRunStart, [this] { StartRun(); });
  timers.At(kRunPause, [this] { EndPause(); });
  timers.At(kEngineFree, [this] { ComputeEngineFree(); });
  timers.At(kTrayTip, [this] { ShowTrayTip(); });
  timers.At(kDataFolderWatch, [this] { WatchDataFolder(); });
  timers.At(kDataFolderArming, [this] { timers[EngineTimer::kDataFolderWatch].Enabled = true; });
}

void Engine::LoadSettings() {
  store_.LoadSettings();
  run.RunDestination = settings.DestinationDir;
  run.Files.Reset();
}

bool Engine::SaveUnlessObjected() {
  bool objection = false;
  CheckSettings(machine_.boxes, settings, screens, objection);
  if (objection) return false;
  SaveChanges();
  return true;
}

void Engine::SaveAndAnnounce(const char* announcement) {
  if (!SaveUnlessObjected()) return;
  machine_.boxes.Show(
      {.text = announcement, .icon = BoxIcon::kInformation, .title = "Settings Saved"});
}

bool Engine::EngineIsFree() const {
  PassedOver pass;
  return pass.Test([&] { return ToNumber(run.EngineFree.Get()) == 1; });
}

void Engine::AskAndStart(const char* question) {
  const BoxAnswer answer = machine_.boxes.Show(
      {.text = question, .icon = BoxIcon::kQuestion, .buttons = BoxButtons::kYesNo});
  if (answer != BoxAnswer::kYes) return;
  if (settings.ShowAlert && EngineIsFree()) CallHook(stages.ShowAlert);
  RequestStart();
}

void Engine::OpenLog() {
  machine_.processes.OpenWithDesktop(BackupLog::PathIn(settings.DataFolder));
}

void Engine::EndPause() {
  timers[EngineTimer::kRunStart].Enabled = true;
  timers[EngineTimer::kRunPause].Enabled = false;
}

// The timer doesn't tick inside its own handler, so that a run of any length
// is started once.
void Engine::StartRun() {
  backup.RunBackup();
  timers[EngineTimer::kRunStart].Enabled = false;
}

void Engine::ComputeEngineFree() {
  int progress = 0;
  std::string status;
  PassedOver pass;
  pass.Step([&] { progress = stages.CompressionProgress ? stages.CompressionProgress() : 0; });
  pass.Step([&] { status = stages.ConnectionStatus ? stages.ConnectionStatus() : std::string(); });
  // A test that fails counts as true, and the last test of either value frees.
  run.EngineFree = pass.StandingError() ? "1" : EngineFreeAfterTick(progress, status);
}

void Engine::ShowNextRun() {
  const std::string next = scheduler.NextRunText();
  const DateTime now = machine_.clock.Now();
  display.Now = machine_.formats.LongTime(now);
  display.Today = machine_.formats.LongDate(now);
  display.NextRun = next.empty() ? "No Backup Has Scheduled" : next;
}

void Engine::ShowTrayTip() {
  display.TrayTip = "Tarnvale [Next Scedule On: " + scheduler.NextRunText() + "]";
}

void Engine::WatchDataFolder() {
  const std::string& folder = settings.DataFolder;
  if (!folder.empty() && machine_.files.FolderExists(folder)) return;
  CallHook(stages.RemoveTrayIcon);
  machine_.processes.StartProgram(machine_.files.ProgramFolder() + "\\Quit.exe");
}

}  // namespace tarnvale
