// The twenty-one timers of the main window, in one table.
#pragma once

#include <deque>
#include <functional>
#include <utility>

#include "ui/timer.h"

namespace tarnvale {

/// What each timer is for. The value is the N of `TimerN`.
enum class EngineTimer {
  kSchedule = 1,
  kPaneFilters,
  kStorageTree,
  kAutoSettingsLink,
  kNextRun,
  kUnused6,
  kRunStart,
  kRunPause,
  kRestoreBar,
  kEngineFree,
  kFolderTrees,
  kTrayTip,
  kWizardPage,
  kSummary,
  kReport,
  kSyncMode,
  kRestoreSourceTree,
  kRestoreTargetTree,
  kUnused19,
  kDataFolderWatch,
  kDataFolderArming,
};

/// Their intervals and start states are in the table of the source file.
class EngineTimers {
 public:
  explicit EngineTimers(TimerQueue& queue);

  Timer& operator[](EngineTimer timer) { return timers_.at(static_cast<std::size_t>(timer) - 1); }

  /// Calls `handler` at each tick.
  void At(EngineTimer timer, std::function<void()> handler) {
    (*this)[timer].Tick.Listen(std::move(handler));
  }

  /// Disables all of them, for an instance that ends.
  void Stop();

 private:
  std::deque<Timer> timers_;
};

}  // namespace tarnvale
