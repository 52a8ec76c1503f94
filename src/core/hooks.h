// What the engine needs of the rest of the program. The composition root sets
// these; one that isn't set does nothing.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "base/date_time.h"

namespace tarnvale {

/// The screens of the main window that the engine and its commands show.
enum class Screen { kList, kStorage, kProgress, kSchedule, kGeneral, kAdvanced, kRestore };

inline constexpr std::array kAllScreens = {Screen::kList,     Screen::kStorage, Screen::kProgress,
                                           Screen::kSchedule, Screen::kGeneral, Screen::kAdvanced,
                                           Screen::kRestore};

/// The main window's side.
struct ScreenHooks {
  /// Each sets the visible flag of one screen and leaves the others alone.
  std::function<void(Screen)> Show;
  std::function<void(Screen)> Hide;
  std::function<void()> FocusStorageField;
  std::function<void()> FocusIntervalField;
};

/// What a report says about a run.
struct RunFacts {
  DateTime start = 0;            ///< 0 when the copy phase was passed over
  DateTime date = 0;             ///< likewise
  std::int32_t total_bytes = 0;  ///< of single files
};

/// The stages after the copy, and the windows that follow them. Each call
/// returns when its work is done and may yield.
struct StageHooks {
  std::function<void()> ShowAlert;            ///< the popup that announces a run
  std::function<void()> ResetProgressWindow;  ///< its bar back to 0
  std::function<void()> FollowCopy;           ///< it mirrors the copy again
  std::function<void()> Compress;
  std::function<void()> ShowTransferWindow;
  std::function<void()> Upload;
  std::function<void(const RunFacts&)> SendReport;
  std::function<void()> RemoveTrayIcon;
  /// Value of the compression bar, 0 to 100.
  std::function<int()> CompressionProgress;
  /// The status text of the transfer window.
  std::function<std::string()> ConnectionStatus;
};

/// Calls a hook if it is set.
template <class Hook, class... Args>
void CallHook(const Hook& hook, Args&&... args) {
  if (hook) hook(std::forward<Args>(args)...);
}

}  // namespace tarnvale
