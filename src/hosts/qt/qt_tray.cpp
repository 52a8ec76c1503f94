#include "hosts/qt/qt_tray.h"

#include <QApplication>
#include <QIcon>

#include <algorithm>
#include <string>

#include "hosts/qt/qt_menus.h"
#include "hosts/qt/qt_pictures.h"
#include "hosts/qt/qt_text.h"
#include "ui/controls.h"

namespace tarnvale {
namespace {

/// How often the desktop is queried for a notification area.
constexpr int kPresenceIntervalMs = 2000;

// Only the X system tray gives an icon a window of this program.
bool HasIconWindow() {
  const QWidgetList windows = QApplication::topLevelWidgets();
  return std::any_of(windows.begin(), windows.end(),
                     [](const QWidget* window) { return window->inherits("QSystemTrayIconSys"); });
}

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
    menu_follows_.clear();
    if (menu_) menu_.release()->deleteLater();
    return true;
  }
  if (adds) {
    icon_ = std::make_unique<QSystemTrayIcon>();
    QObject::connect(icon_.get(), &QSystemTrayIcon::activated,
                     [this](QSystemTrayIcon::ActivationReason reason) { Click(reason); });
    // Before the icon shows: a desktop fetches the menu when it meets the icon.
    ExportMenu(record.menu);
  }
  hook_ = record.hook;
  ShowRecord(record);
  icon_->show();
  // The X system tray reports the right button, and the program opens the menu.
  if (adds && HasIconWindow()) icon_->setContextMenu(nullptr);
  return true;
}

// A choice may take the icon away with its menu: it is reported after Qt's event.
void QtTray::ExportMenu(MenuItem* menu) {
  if (menu == nullptr) return;
  menu_ = std::make_unique<QMenu>();
  const MenuChoice choice = [this](MenuItem& row) { loop_.Post([&row] { row.Clicked.Emit(); }); };
  FillMenu(*menu_, *menu, choice, menu_follows_);
  icon_->setContextMenu(menu_.get());
}

void QtTray::ShowRecord(const TrayRecord& record) {
  icon_->setIcon(PictureNamed(record.icon));
  const auto end = std::find(record.tip.begin(), record.tip.end(), '\0');
  icon_->setToolTip(ToShown(std::string(record.tip.begin(), end)));
}

void QtTray::Click(QSystemTrayIcon::ActivationReason reason) {
  const bool is_opened_by_desktop =
      reason == QSystemTrayIcon::Context && icon_ && icon_->contextMenu() != nullptr;
  if (is_opened_by_desktop) return;
  for (const TrayMessage message : clicks_.MessagesOf(reason, uptime_.elapsed())) Report(message);
}

// After the event of Qt's own icon: a listener can take that icon away.
void QtTray::Report(TrayMessage message) {
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
