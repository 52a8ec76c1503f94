#include "platform/qt/qt_tray.h"

#include <QIcon>

#include <algorithm>
#include <string>

#include "platform/controls.h"
#include "platform/qt/peers/picture_box_peer.h"
#include "platform/qt/qt_text.h"

namespace tarnvale {
namespace {

/// How often the desktop is asked whether it has a notification area.
constexpr int kPresenceIntervalMs = 2000;

}  // namespace

QtTray::QtTray(QtEventLoop& loop) : loop_(loop) {
  QObject::connect(&presence_, &QTimer::timeout, [this] { LearnPresence(); });
  presence_.setTimerType(Qt::VeryCoarseTimer);
  presence_.start(kPresenceIntervalMs);
  IsPresent = QSystemTrayIcon::isSystemTrayAvailable();
  uptime_.start();
}

QtTray::~QtTray() = default;

bool QtTray::Notify(TrayCommand command, const TrayRecord& record) {
  const bool adds = command == TrayCommand::kAdd;
  if (adds == (icon_ != nullptr)) return false;
  if (adds && !QSystemTrayIcon::isSystemTrayAvailable()) return false;
  if (command == TrayCommand::kDelete) {
    // The command may come from a click on the icon itself.
    icon_->hide();
    icon_.release()->deleteLater();
    return true;
  }
  if (adds) {
    icon_ = std::make_unique<QSystemTrayIcon>();
    QObject::connect(icon_.get(), &QSystemTrayIcon::activated,
                     [this](QSystemTrayIcon::ActivationReason reason) { Click(reason); });
  }
  hook_ = record.hook;
  ShowRecord(record);
  icon_->show();
  return true;
}

void QtTray::ShowRecord(const TrayRecord& record) {
  QIcon picture;
  for (const Raster& size : record.icon) picture.addPixmap(ToPixmap(size, 1));
  icon_->setIcon(picture);
  const auto end = std::find(record.tip.begin(), record.tip.end(), '\0');
  icon_->setToolTip(ToShown(std::string(record.tip.begin(), end)));
}

void QtTray::Click(QSystemTrayIcon::ActivationReason reason) {
  for (const TrayMessage message : clicks_.MessagesOf(reason, uptime_.elapsed())) Tell(message);
}

// After the event of Qt's own icon: what is told can take that icon away.
void QtTray::Tell(TrayMessage message) {
  loop_.Post([this, message] {
    if (hook_ != nullptr) {
      hook_->MouseMove.Emit(static_cast<double>(message) * kTwipsPerPixel, 0);
    }
  });
}

void QtTray::LearnPresence() {
  loop_.Deliver([this] { IsPresent = QSystemTrayIcon::isSystemTrayAvailable(); });
}

}  // namespace tarnvale
