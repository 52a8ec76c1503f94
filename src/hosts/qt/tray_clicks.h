// From what the desktop reports of an icon to the messages of a mouse.
#pragma once

#include <QSystemTrayIcon>

#include <cstdint>
#include <optional>
#include <vector>

#include "ui/tray.h"

namespace tarnvale {

/// The X system tray reports a click and then the double click that it became; a
/// status notifier reports nothing but clicks, so that two quick ones are put
/// together here.
class TrayClicks {
 public:
  /// The messages of one activation, in order. `now_ms`: of any clock that only
  /// goes forward.
  std::vector<TrayMessage> MessagesOf(QSystemTrayIcon::ActivationReason reason,
                                      std::int64_t now_ms);

 private:
  std::vector<TrayMessage> Click(std::int64_t now_ms);

  /// When the click was that another one makes a double click.
  std::optional<std::int64_t> first_ms_;
};

}  // namespace tarnvale
