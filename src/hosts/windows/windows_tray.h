// The notification area.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "hosts/windows/message_window.h"
#include "ui/event_loop.h"
#include "ui/tray.h"

namespace tarnvale {

/// One icon at most. It comes back by itself when the shell was started anew.
class WindowsTray final : public NotificationArea {
 public:
  /// The icon of a name, as large as those of the area; whoever makes it keeps it.
  using IconSource = std::function<HICON(const std::string& name)>;

  /// `loop` must outlive it.
  WindowsTray(EventLoop& loop, IconSource icon);
  ~WindowsTray() override;

  bool Notify(TrayCommand command, const TrayRecord& record) override;

 private:
  std::optional<LRESULT> OnMessage(UINT message, LPARAM second);
  void ReportMouse(UINT message);
  void Return();
  void LookForArea();
  bool Send(DWORD command) const;
  bool Add() const;

  EventLoop& loop_;
  IconSource icon_;
  std::optional<TrayRecord> shown_;
  bool was_missed_ = false;  ///< the area wasn't there at the last look
  UINT area_made_;           ///< the message that a new area sends
  MessageWindow messages_{
      [this](UINT message, WPARAM, LPARAM second) { return OnMessage(message, second); },
      MessageWindow::Hears::kBroadcasts};
};

}  // namespace tarnvale
