#include "core/check_settings.h"

namespace tarnvale {
namespace {

constexpr const char* kNoValidTime = "You Must Specify A Valid Time For The Backup Schedule!";

void ShowInstead(const ScreenHooks& screens, Screen screen) {
  CallHook(screens.Show, screen);
  for (const Screen other : kAllScreens) {
    if (other != screen) CallHook(screens.Hide, other);
  }
}

void Object(MessageBoxes& boxes, const ScreenHooks& screens, const char* text, Screen screen) {
  boxes.Show({.text = text, .icon = BoxIcon::kStop});
  ShowInstead(screens, screen);
}

bool ConfirmsRoot(MessageBoxes& boxes) {
  return boxes.Show({.text = "The Destiny Directroy Was Left C:\\.\n\nConfirm?",
                     .icon = BoxIcon::kExclamation,
                     .buttons = BoxButtons::kYesNo}) == BoxAnswer::kYes;
}

}  // namespace

void CheckSettings(MessageBoxes& boxes, const BackupSettings& settings, const ScreenHooks& screens,
                   bool& objection) {
  objection = true;
  if (settings.Entries.Count() == 0) {
    Object(boxes, screens, "You Must At Least Have An Item For Backup", Screen::kList);
    return;
  }
  const std::string& destination = settings.DestinationDir;
  if (destination.empty()) {
    Object(boxes, screens, "You Must Specify The Backup Location", Screen::kStorage);
    CallHook(screens.FocusStorageField);
    return;
  }
  if (destination == "C:\\" || destination == "c:\\") {
    // Required: a confirmed root passes over the tests of the times.
    objection = !ConfirmsRoot(boxes);
    if (!objection) return;
    ShowInstead(screens, Screen::kStorage);
    CallHook(screens.FocusStorageField);
    return;
  }
  if (settings.ScheduleAt && settings.AlwaysAtText.Get() == kNoTimeText) {
    Object(boxes, screens, kNoValidTime, Screen::kSchedule);
    return;
  }
  if (settings.ScheduleEach && settings.EachText.Get() == kNoTimeText) {
    Object(boxes, screens, kNoValidTime, Screen::kSchedule);
    CallHook(screens.FocusIntervalField);
    return;
  }
  objection = false;
}

}  // namespace tarnvale
