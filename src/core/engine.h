// The engine of the main window: one object for the life of the process.
#pragma once

#include <string>

#include "core/backup_run.h"
#include "core/engine_timers.h"
#include "core/hooks.h"
#include "core/list_commands.h"
#include "core/report_mail.h"
#include "core/run_state.h"
#include "core/scheduler.h"
#include "settings/backup_settings.h"
#include "settings/settings_store.h"
#include "ui/machine.h"

namespace tarnvale {

/// What the schedule page, the tray and the summary show of the engine.
struct EngineDisplay {
  Property<std::string> NextRun;  ///< or that none is scheduled
  Property<std::string> Now;      ///< the present time
  Property<std::string> Today;    ///< the present date, long
  Property<std::string> TrayTip;
};

class Engine {
 public:
  explicit Engine(Machine& machine);
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  /// True when a previous instance of this program is running on the system.
  bool Program_Running() { return machine_.processes.PreviousInstance(); }

  /// Loads the settings, takes over the destination for runs and gives the
  /// table of run files its single row.
  void LoadSettings();
  void SaveChanges() { store_.SaveChanges(); }
  /// Checks, and saves when nothing objects. True when saved.
  bool SaveUnlessObjected();
  /// The same, with a box that says `announcement` once they are saved.
  void SaveAndAnnounce(const char* announcement);

  /// A start by hand, confirmed by `question`: on Yes the popup and the start
  /// request.
  void AskAndStart(const char* question);

  /// Opens the log of the last run with the desktop's program; does nothing
  /// visible when there is none.
  void OpenLog();

  bool EngineIsFree() const;

  Machine& machine() { return machine_; }

  BackupSettings settings;
  RunState run;
  ReportMail mail;
  ScreenHooks screens;
  StageHooks stages;
  EngineTimers timers;
  EngineDisplay display;
  Scheduler scheduler;
  ListCommands list;
  BackupRun backup;

 private:
  void FillTicks();
  void RequestStart() { timers[EngineTimer::kRunPause].Enabled = true; }

  // One tick each.
  void EndPause();
  void StartRun();
  void ComputeEngineFree();
  void ShowNextRun();
  void ShowTrayTip();
  void WatchDataFolder();

  Machine& machine_;
  SettingsStore store_;
};

}  // namespace tarnvale
