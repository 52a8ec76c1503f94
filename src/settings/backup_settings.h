// All that the user configures, in one record.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/date_time.h"
#include "base/property.h"
#include "platform/files.h"
#include "settings/backup_list.h"
#include "ui/controls.h"

namespace tarnvale {

/// What the two time fields show while no time is set.
inline constexpr std::string_view kNoTimeText = "00:00";

/// How the list is backed up: one of three, or none when the sync mode was
/// taken back because the list no longer has exactly one item.
struct BackupModeChoice {
  Property<bool> Complete{true};
  Property<bool> Incremental{false};
  Property<bool> Sync{false};
};

/// The state of the program's settings. The values here are what holds before
/// any load. Controls are bound to these very properties; changing one changes
/// the setting of the running program at once.
class BackupSettings {
 public:
  BackupSettings();
  BackupSettings(const BackupSettings&) = delete;
  BackupSettings& operator=(const BackupSettings&) = delete;

  /// Folder of the settings file and of the log, no backslash at its end.
  Property<std::string> DataFolder{"None"};
  Path SettingsFile() const { return DataFolder.Get() + "\\Tarnvale.ini"; }

  /// The fixed time of day and the repeat interval as "hh:mm"; "00:00" is none.
  Property<std::string> AlwaysAtText{std::string(kNoTimeText)};
  Property<std::string> EachText{std::string(kNoTimeText)};
  /// Hour and minute of the two texts, seconds 0; 0 is not set.
  DateTime AlwaysAtTime = 0;
  DateTime EachTime = 0;
  /// Which time field gets the first focus, which in turn chooses between
  /// ScheduleAt and ScheduleEach.
  Property<bool> UseEach{false};
  /// Run at the fixed time, or at the interval: one of the two.
  Property<bool> ScheduleAt{false};
  Property<bool> ScheduleEach{true};

  /// Run on all days. Ticking a day clears it.
  Property<bool> EveryDay{true};
  /// Sunday (index 0) to Saturday (index 6).
  std::array<Property<bool>, 7> WeekDays;

  Property<bool> SaveLog{true};
  Property<bool> ShowAlert{true};
  Property<bool> AutoCompress{false};
  Property<bool> AutoUpload{false};
  Property<bool> AutoReport{false};

  /// Choosing Complete clears both flags; Incremental sets the first and clears
  /// the second; Sync the other way round. Taking a choice back leaves them.
  BackupModeChoice BackupMode;
  Property<bool> IncrementalFlag{false};
  Property<bool> SyncroFlag{false};

  /// Where the backup goes. A run uses its own copy of it (RunState).
  Property<std::string> DestinationDir{"None"};
  /// Where automatic compression puts its archive.
  Property<std::string> CompressDir{"C:\\"};
  Property<std::string> SmtpServer;
  /// Recipients of the report, separated by commas.
  Property<std::string> ReportTo;
  Property<std::string> FtpServer{"0"};
  Property<std::string> FtpUsername{"0"};
  Property<std::string> FtpPassword{"0"};
  /// "1" once settings were saved.
  Property<std::string> WizardMark{"0"};
  /// Set to "1" as the first act of each save; nothing reads it.
  Property<std::string> SaveMark;

  /// Reference of the interval: hour and minute, seconds 0.
  DateTime LoadMinute = 0;

  BackupList Entries;

  /// Chooses one of the modes, as a click on it does, chosen already or not.
  void ChooseMode(Property<bool>& mode);

  /// One bit for each ticked day, Sunday lowest; 0 while EveryDay is set.
  std::uint8_t DayMask() const;

 private:
  OptionGroup schedule_group_;
  OptionGroup mode_group_;
};

/// What a time field accepts: two digits, a colon, two digits.
bool FitsTimeMask(std::string_view text);

}  // namespace tarnvale
