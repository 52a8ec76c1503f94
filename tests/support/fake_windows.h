// A window host without a display, and a notification area of its own.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <vector>

#include "base/signal.h"
#include "ui/controls.h"
#include "ui/event_loop.h"
#include "ui/tray.h"
#include "ui/window.h"

namespace tarnvale::testing {

/// Knows which windows there are, and reports from the loop that one has become smaller or
/// larger, as a native window does. A screen of 1024 by 768 pixels.
class FakeWindows : public WindowHost {
 public:
  FakeWindows(EventLoop& loop, Desktop& desktop) : loop_(loop), desktop_(desktop) {}

  /// Clicks `row` in the next menu that pops up; null: the menu is left.
  void ChooseInMenu(MenuItem* row) { choices_.push_back(row); }
  /// Runs `action` while the next menu is open.
  void WhileMenuIsOpen(std::function<void()> action) { actions_.push_back(std::move(action)); }

  const std::vector<Window*>& Adopted() const { return adopted_; }
  /// The menus that popped up, in order.
  const std::vector<MenuItem*>& PoppedUp() const { return popped_up_; }

  void Adopt(Window& window) override;
  void Drop(Window& window) override;
  void PopUp(MenuItem& menu) override;
  int ScreenWidthTwips() override { return 1024 * kTwipsPerPixel; }
  int ScreenHeightTwips() override { return 768 * kTwipsPerPixel; }
  Desktop& Surroundings() override { return desktop_; }

 private:
  struct Reported {
    WindowState state = WindowState::kNormal;
    Subscription changes;
  };
  void ReportState(Window& window);

  EventLoop& loop_;
  Desktop& desktop_;
  std::map<Window*, Reported> reported_;
  std::vector<Window*> adopted_;
  std::vector<MenuItem*> popped_up_;
  std::deque<MenuItem*> choices_;
  std::deque<std::function<void()>> actions_;
};

/// Keeps at most one icon, and every command that it was sent.
class FakeTray : public NotificationArea {
 public:
  FakeTray() { IsPresent = true; }

  struct Sent {
    TrayCommand command;
    TrayRecord record;
    bool taken;  ///< what Notify answered
  };

  bool Notify(TrayCommand command, const TrayRecord& record) override;

  bool HasIcon() const { return has_icon_; }
  const std::vector<Sent>& Log() const { return log_; }
  /// The mouse does something on the icon.
  void Mouse(TrayMessage message);

 private:
  bool has_icon_ = false;
  TrayRecord shown_;
  std::vector<Sent> log_;
};

}  // namespace tarnvale::testing
