#include "hosts/qt/tray_clicks.h"

#include <QApplication>

namespace tarnvale {

std::vector<TrayMessage> TrayClicks::MessagesOf(QSystemTrayIcon::ActivationReason reason,
                                                std::int64_t now_ms) {
  switch (reason) {
    case QSystemTrayIcon::Trigger:
      return Click(now_ms);
    case QSystemTrayIcon::DoubleClick:
      first_ms_.reset();
      return {kTrayLeftDouble};
    case QSystemTrayIcon::Context:
      return {kTrayRightDown, kTrayRightUp};
    default:
      return {};
  }
}

// Chosen: a single activation is a click, whatever the person did for it.
std::vector<TrayMessage> TrayClicks::Click(std::int64_t now_ms) {
  if (first_ms_ && now_ms - *first_ms_ < QApplication::doubleClickInterval()) {
    first_ms_.reset();
    return {kTrayLeftDouble};
  }
  first_ms_ = now_ms;
  return {kTrayLeftDown, kTrayLeftUp};
}

}  // namespace tarnvale
