// The notification area of a Linux desktop.
#pragma once

#include <QElapsedTimer>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

#include <memory>
#include <vector>

#include "base/signal.h"
#include "hosts/qt/qt_event_loop.h"
#include "hosts/qt/tray_clicks.h"
#include "ui/tray.h"

namespace tarnvale {

/// One icon at most, by the desktop's status notifier or, where it has none, by
/// the X system tray.
class QtTray final : public NotificationArea {
 public:
  /// `loop` must outlive it.
  explicit QtTray(QtEventLoop& loop);
  ~QtTray() override;

  bool Notify(TrayCommand command, const TrayRecord& record) override;

 private:
  void ExportMenu(MenuItem* menu);
  void ShowRecord(const TrayRecord& record);
  void Click(QSystemTrayIcon::ActivationReason reason);
  void Report(TrayMessage message);
  void LearnPresence();

  QtEventLoop& loop_;
  /// What a status notifier's desktop shows. Goes after the icon.
  std::unique_ptr<QMenu> menu_;
  std::vector<Subscription> menu_follows_;
  std::unique_ptr<QSystemTrayIcon> icon_;
  PictureBox* hook_ = nullptr;
  TrayClicks clicks_;
  QElapsedTimer uptime_;
  /// Areas come and go without notice to programs that have no icon in them.
  QTimer presence_;
};

}  // namespace tarnvale
