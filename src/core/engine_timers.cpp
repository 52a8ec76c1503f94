#include "core/engine_timers.h"

namespace tarnvale {
namespace {

using T = EngineTicks;

const std::array<TimerRow, 21> kTable = {{
    {1, 59000, true, &T::TestSchedule},
    {2, 500, true, &T::MirrorPaneFilters},
    {3, 500, true, &T::OpenStorageTree},
    {4, 100, false, &T::LinkAutoSettings},
    {5, 100, true, &T::ShowNextRun},
    {6, 59999, true, &T::Nothing},
    {7, 8000, false, &T::StartRun},
    {8, 100, false, &T::EndPause},
    {9, 100, false, &T::AdvanceRestoreBar},
    {10, 100, true, &T::ComputeEngineFree},
    {11, 500, true, &T::FollowFolderTrees},
    {12, 1000, true, &T::ShowTrayTip},
    {13, 1000, false, &T::ShowWizardPage},
    {14, 500, true, &T::ShowSummary},
    {15, 100, true, &T::AllowReport},
    {16, 200, true, &T::AllowSyncMode},
    {17, 200, true, &T::OpenRestoreSourceTree},
    {18, 200, true, &T::OpenRestoreTargetTree},
    {19, 1000, false, &T::Nothing},
    {20, 100, false, &T::WatchDataFolder},
    {21, 5000, true, &T::ArmDataFolderWatch},
}};

}  // namespace

std::span<const TimerRow> EngineTimerTable() {
  return kTable;
}

void EngineTimers::Stop() {
  for (Timer& timer : timers_) timer.Enabled = false;
}

EngineTimers::EngineTimers(TimerQueue& queue) {
  for (const TimerRow& row : kTable) {
    Timer& timer = timers_.emplace_back(queue, row.interval_ms, row.on_at_start);
    timer.Tick.Listen([this, tick = row.tick] {
      if (ticks.*tick) (ticks.*tick)();
    });
  }
}

}  // namespace tarnvale
