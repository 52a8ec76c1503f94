#include "settings/backup_settings.h"

#include <algorithm>

namespace tarnvale {

BackupSettings::BackupSettings()
    : schedule_group_({&ScheduleAt, &ScheduleEach}),
      mode_group_({&BackupMode.Complete, &BackupMode.Incremental, &BackupMode.Sync}) {
  for (Property<bool>& day : WeekDays) {
    day.Changed.Listen([this, &day] {
      if (day) EveryDay = false;
    });
  }
  for (Property<bool>* mode : {&BackupMode.Complete, &BackupMode.Incremental, &BackupMode.Sync}) {
    mode->Changed.Listen([this, mode] {
      if (*mode) ChooseMode(*mode);
    });
  }
}

void BackupSettings::ChooseMode(Property<bool>& mode) {
  mode = true;
  IncrementalFlag = &mode == &BackupMode.Incremental;
  SyncroFlag = &mode == &BackupMode.Sync;
}

std::uint8_t BackupSettings::DayMask() const {
  if (EveryDay) return 0;
  unsigned mask = 0;
  for (std::size_t day = 0; day < WeekDays.size(); ++day) {
    if (WeekDays[day]) mask |= 1U << day;
  }
  return static_cast<std::uint8_t>(mask);
}

bool FitsTimeMask(std::string_view text) {
  const auto digit = [&](std::size_t i) { return text[i] >= '0' && text[i] <= '9'; };
  return text.size() == 5 && digit(0) && digit(1) && text[2] == ':' && digit(3) && digit(4);
}

}  // namespace tarnvale
