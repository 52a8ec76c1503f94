#include "core/engine_timers.h"

#include <array>

namespace tarnvale {
namespace {

using enum EngineTimer;

struct TimerRow {
  EngineTimer timer;
  int interval_ms;
  bool on_at_start;
};

// In the order of their numbers.
constexpr std::array<TimerRow, 21> kTable = {{
    {kSchedule, 59000, true},
    {kPaneFilters, 500, true},
    {kStorageTree, 500, true},
    {kAutoSettingsLink, 100, false},
    {kNextRun, 100, true},
    {kUnused6, 59999, true},
    {kRunStart, 8000, false},
    {kRunPause, 100, false},
    {kRestoreBar, 100, false},
    {kEngineFree, 100, true},
    {kFolderTrees, 500, true},
    {kTrayTip, 1000, true},
    {kWizardPage, 1000, false},
    {kSummary, 500, true},
    {kReport, 100, true},
    {kSyncMode, 200, true},
    {kRestoreSourceTree, 200, true},
    {kRestoreTargetTree, 200, true},
    {kUnused19, 1000, false},
    {kDataFolderWatch, 100, false},
    {kDataFolderArming, 5000, true},
}};

}  // namespace

EngineTimers::EngineTimers(TimerQueue& queue) {
  for (const TimerRow& row : kTable) {
    timers_.emplace_back(queue, row.interval_ms, row.on_at_start);
  }
}

void EngineTimers::Stop() {
  for (Timer& timer : timers_) timer.Enabled = false;
}

}  // namespace tarnvale
