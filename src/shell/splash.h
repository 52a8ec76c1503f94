// The window of the program's first seconds.
#pragma once

#include <functional>

#include "settings/backup_settings.h"
#include "ui/controls.h"
#include "ui/machine.h"
#include "ui/window.h"

namespace tarnvale {

/// What comes after the first seconds. Set by whoever composes the program; one
/// that isn't set does nothing.
struct SplashHooks {
  /// Sets the main window visible, its state left alone.
  std::function<void()> ShowMainWindow;
  /// Loads the agreement and sets it visible.
  std::function<void()> ShowAgreement;
};

/// Starts the companion program that names the data folder and, seven seconds
/// later, decides what the person sees first.
class splash : public Window {
 public:
  /// `settings` must outlive the window.
  splash(Machine& machine, const BackupSettings& settings, SplashHooks hooks);

  /// The first act of the program: loads the window and shows it. Waits for
  /// nothing; a companion program that is missing is passed over in silence.
  void Start();

  PictureBox Scenery;
  Label NameLabel{TextRole::kTitle};  ///< The program's name, on the picture.
  Timer Timer1;                       ///< Decides after 7000 ms.

 private:
  void Load();
  void Decide();

  Machine& machine_;
  const BackupSettings& settings_;
  SplashHooks hooks_;
};

}  // namespace tarnvale
