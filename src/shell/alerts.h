// The popups of the program: what makes and shows them.
#pragma once

#include <memory>

#include "core/engine.h"
#include "shell/alert_popup.h"
#include "shell/progress_popup.h"

namespace tarnvale {

/// The one popup of each kind. It is loaded, hidden, at its first use and lives
/// as long as this does; hiding or closing it doesn't unload it.
class Popups {
 public:
  /// The engine must outlive this.
  explicit Popups(Engine& engine) : engine_(engine) {}
  Popups(const Popups&) = delete;
  Popups& operator=(const Popups&) = delete;

  /// Sets what the engine needs of the popups.
  void ConnectStages();

  bool IsAlertLoaded() const { return alert_ != nullptr; }
  bool IsProgressLoaded() const { return progress_ != nullptr; }

  /// Loads the alert. False when it is to stay hidden, as no run could start.
  bool LoadAlert();
  /// The alert, which must be loaded.
  frmGmail& Alert() { return *alert_; }

  /// The progress window; loads it when it isn't.
  Progress& ProgressPopup();

 private:
  Engine& engine_;
  std::unique_ptr<frmGmail> alert_;
  std::unique_ptr<Progress> progress_;
};

/// Shows the popups, each without waiting. Made anew for each use; it keeps
/// nothing but the way to them.
class cAlert {
 public:
  explicit cAlert(Popups& popups) : popups_(popups) {}

  /// Announces a run.
  void Gmail();
  /// Shows how far the run is.
  void ProgressWindow();

 private:
  Popups& popups_;
};

}  // namespace tarnvale
