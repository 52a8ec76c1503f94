// The engine with its popups.
#pragma once

#include <string>

#include "shell/alerts.h"
#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {

inline constexpr int kStepTwips = 30;
inline constexpr int kScreenWidthTwips = 1024 * kTwipsPerPixel;
inline constexpr int kScreenHeightTwips = 768 * kTwipsPerPixel;

/// A whole engine with its popups. The gate is free until its first tick.
class PopupsFixture : public EngineFixture {
 protected:
  PopupsFixture() {
    engine.settings.SaveLog = false;
    engine.run.EngineFree = "1";
    popups.ConnectStages();
    engine.stages.CompressionProgress = [this] { return compression; };
    engine.stages.ConnectionStatus = [this] { return connection; };
  }

  static int HeightTwips(const Window& window) {
    return window.ClientSize.height_px * kTwipsPerPixel;
  }
  /// As many steps take a window from home to its place, a millisecond each.
  static std::chrono::milliseconds Slide(const Window& window) {
    return std::chrono::milliseconds(HeightTwips(window) / kStepTwips);
  }

  frmGmail& Alert() { return popups.Alert(); }
  Progress& Bar() { return popups.ProgressPopup(); }
  void Announce() { cAlert(popups).Gmail(); }

  int compression = 0;
  std::string connection;
  Popups popups{engine};
};

}  // namespace tarnvale::testing
