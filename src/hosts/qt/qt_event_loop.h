// The event loop on Qt's.
#pragma once

#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

#include "ui/paced_loop.h"

namespace tarnvale {

/// Turns Qt's events and the program's timers. The timers tick from whatever
/// loop of Qt is running: the main one, a message box's, a menu's, a yield.
class QtEventLoop final : public PacedLoop {
 public:
  /// A QApplication must exist and outlive it.
  QtEventLoop();

  /// Ends every message box and menu that is open as well.
  void Quit(int code) override;
  void Post(std::function<void()> job) override;
  int Nesting() const override;

 private:
  void Pump(Milliseconds wait) override;
  void Serve() override;
  void StartAlarm(std::optional<Milliseconds> wait) override;

  QTimer alarm_;
  QTimer limit_;
  QObject receiver_;
};

}  // namespace tarnvale
