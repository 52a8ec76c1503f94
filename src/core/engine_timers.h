// The twenty-one timers of the main window, in one table.
#pragma once

#include <array>
#include <deque>
#include <functional>
#include <span>

#include "ui/timer.h"

namespace tarnvale {

/// What the ticks do, one function a timer. The engine fills in its own topics,
/// the main window the others.
struct EngineTicks {
  std::function<void()> TestSchedule;
  std::function<void()> MirrorPaneFilters;
  std::function<void()> OpenStorageTree;
  std::function<void()> LinkAutoSettings;
  std::function<void()> ShowNextRun;
  std::function<void()> StartRun;
  std::function<void()> EndPause;
  std::function<void()> AdvanceRestoreBar;
  std::function<void()> ComputeEngineFree;
  std::function<void()> FollowFolderTrees;
  std::function<void()> ShowTrayTip;
  std::function<void()> ShowWizardPage;
  std::function<void()> ShowSummary;
  std::function<void()> AllowReport;
  std::function<void()> AllowSyncMode;
  std::function<void()> OpenRestoreSourceTree;
  std::function<void()> OpenRestoreTargetTree;
  std::function<void()> WatchDataFolder;
  std::function<void()> ArmDataFolderWatch;
  std::function<void()> Nothing;
};

struct TimerRow {
  int number;  ///< the N of `TimerN`
  int interval_ms;
  bool on_at_start;
  std::function<void()> EngineTicks::*tick;
};

/// The wiring, in the order of the numbers from 1 to 21.
std::span<const TimerRow> EngineTimerTable();

class EngineTimers {
 public:
  explicit EngineTimers(TimerQueue& queue);

  /// `number` from 1 to 21.
  Timer& Number(int number) { return timers_.at(static_cast<std::size_t>(number - 1)); }

  /// Disables all of them, for an instance that ends.
  void Stop();

  // Those that somebody enables or disables.
  Timer& AutoSettingsLink() { return Number(4); }
  Timer& RunStart() { return Number(7); }
  Timer& RunPause() { return Number(8); }
  Timer& RestoreShow() { return Number(9); }
  Timer& WizardPage() { return Number(13); }
  Timer& DataFolderWatch() { return Number(20); }

  EngineTicks ticks;

 private:
  std::deque<Timer> timers_;
};

}  // namespace tarnvale
