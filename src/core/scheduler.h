// Decides, once in a tick, whether this minute is a minute to back up.
#pragma once

#include <functional>
#include <string>

#include "base/failure.h"
#include "core/hooks.h"
#include "platform/clock.h"
#include "platform/locale_formats.h"
#include "settings/backup_settings.h"
#include "ui/message_boxes.h"

namespace tarnvale {

/// Knows days and times of day, not dates. It has no catch-up, no queue, and no
/// memory of runs other than the reference of the interval: a minute that was
/// missed stays missed.
class Scheduler {
 public:
  struct Hooks {
    /// Whether the engine may start a run, and the request to start one.
    std::function<bool()> EngineIsFree;
    std::function<void()> RequestStart;
  };

  /// What a minute is compared with, and where a failed entry is reported.
  struct Parts {
    Clock& clock;
    LocaleFormats& formats;
    MessageBoxes& boxes;
  };

  Scheduler(Parts parts, BackupSettings& settings, ScreenHooks& screens, StageHooks& stages,
            Hooks hooks);

  /// The tick: tests the day, then CheckSchedule.
  void Tick();

  /// Requests a start when the present minute is the fixed time or the end of
  /// the interval. Required: two ticks in the minute of the fixed time request
  /// two starts.
  void CheckSchedule();

  /// The next time of day as text, whatever the chosen days; empty when nothing
  /// is scheduled.
  std::string NextRunText() const;

  // What the user does with the schedule's fields.
  void EnterFixedTime();
  void LeaveFixedTime();
  void EnterInterval();
  /// Required: with "00:00" it is the fixed time that is cleared, and the
  /// interval keeps its value.
  void LeaveInterval();
  void ChooseEveryDay();

  bool BadAtTime() const { return bad_at_time_; }
  bool BadEachTime() const { return bad_each_time_; }

 private:
  DateTime IntervalTarget() const;
  void MatchSteps();
  void ShowEntryError(const ProgramError& error, const char* text_when_no_time);

  Parts parts_;
  BackupSettings& settings_;
  ScreenHooks& screens_;
  StageHooks& stages_;
  Hooks hooks_;
  bool bad_at_time_ = false;
  bool bad_each_time_ = false;
};

}  // namespace tarnvale
