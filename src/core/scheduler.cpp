#include "core/scheduler.h"

#include "base/numbers.h"

namespace tarnvale {

Scheduler::Scheduler(Parts parts, BackupSettings& settings, ScreenHooks& screens,
                     StageHooks& stages, Hooks hooks)
    : parts_(parts),
      settings_(settings),
      screens_(screens),
      stages_(stages),
      hooks_(std::move(hooks)) {}

void Scheduler::Tick() {
  if (settings_.EachTime == 0 && settings_.AlwaysAtTime == 0) return;
  if (settings_.EveryDay) {
    CheckSchedule();
    return;
  }
  const int today = WeekdayOf(parts_.clock.Now());
  for (int day = 1; day <= static_cast<int>(settings_.WeekDays.size()); ++day) {
    if (settings_.WeekDays[static_cast<std::size_t>(day - 1)] && day == today) CheckSchedule();
  }
}

void Scheduler::CheckSchedule() {
  try {
    const DateTime now_minute = MinutePart(parts_.clock.Now());
    if (settings_.ScheduleAt && settings_.AlwaysAtTime != 0 &&
        now_minute == settings_.AlwaysAtTime) {
      MatchSteps();
    }
    if (settings_.ScheduleEach && settings_.EachTime != 0 && now_minute == IntervalTarget()) {
      MatchSteps();
    }
  } catch (const ProgramError&) {
    // Required: a failure leaves the procedure, and nobody hears of it.
    return;
  }
}

void Scheduler::MatchSteps() {
  if (settings_.ShowAlert && hooks_.EngineIsFree()) CallHook(stages_.ShowAlert);
  CallHook(screens_.Show, Screen::kProgress);
  // Required: requested whether or not the engine is free.
  hooks_.RequestStart();
  settings_.LoadMinute = MinutePart(parts_.clock.Now());
}

// The sum as a time of day: past midnight it wraps round.
DateTime Scheduler::IntervalTarget() const {
  return TimePart(settings_.EachTime + settings_.LoadMinute);
}

std::string Scheduler::NextRunText() const {
  std::string text;
  if (settings_.ScheduleAt && settings_.AlwaysAtTime != 0) {
    text = parts_.formats.LongTime(settings_.AlwaysAtTime);
  }
  if (settings_.ScheduleEach && settings_.EachTime != 0) {
    text = parts_.formats.LongTime(IntervalTarget());
  }
  return text;
}

void Scheduler::EnterFixedTime() {
  bad_at_time_ = false;
  settings_.ScheduleAt = true;
}

void Scheduler::EnterInterval() {
  settings_.ScheduleEach = true;
  bad_each_time_ = false;
}

void Scheduler::LeaveFixedTime() {
  if (settings_.AlwaysAtText.Get() == kNoTimeText || bad_each_time_) return;
  try {
    settings_.AlwaysAtTime = MinutePart(TextToTime(settings_.AlwaysAtText.Get()));
  } catch (const ProgramError& error) {
    ShowEntryError(error, "An Invalid Time Frame Has Been Entered");
    bad_at_time_ = true;
    settings_.AlwaysAtTime = 0;
  }
}

void Scheduler::LeaveInterval() {
  if (bad_at_time_) return;
  if (settings_.EachText.Get() == kNoTimeText) {
    settings_.ScheduleAt = true;
    settings_.AlwaysAtTime = 0;
    return;
  }
  try {
    settings_.EachTime = MinutePart(TextToTime(settings_.EachText.Get()));
  } catch (const ProgramError& error) {
    ShowEntryError(error, "An Invalid Interval Has Been Entered.");
    bad_each_time_ = true;
    settings_.EachTime = 0;
    CallHook(screens_.FocusIntervalField);
  }
}

void Scheduler::ShowEntryError(const ProgramError& error, const char* text_when_no_time) {
  if (error.Number() == kTypeMismatch) {
    parts_.boxes.Show({.text = text_when_no_time, .icon = BoxIcon::kStop});
    return;
  }
  parts_.boxes.Show({.text = ToText(error.Number()) + "\n" + error.Description()});
}

void Scheduler::ChooseEveryDay() {
  for (Property<bool>& day : settings_.WeekDays) day = false;
  settings_.EveryDay = true;
}

}  // namespace tarnvale
