// Menus of records as the system's.
#pragma once

#include <vector>

#include "base/signal.h"
#include "hosts/windows/system_headers.h"
#include "ui/event_loop.h"
#include "ui/menu.h"

namespace tarnvale {

/// A native menu with the rows of records, and what opens from them. Captions and states
/// follow the records as long as it lives.
class WindowsMenu {
 public:
  /// Adds the rows to `menu`, which it doesn't own. Only where `shows_default` is set a
  /// row may be the bold one.
  WindowsMenu(HMENU menu, const std::vector<MenuItem*>& rows, bool shows_default);
  WindowsMenu(const WindowsMenu&) = delete;
  WindowsMenu& operator=(const WindowsMenu&) = delete;

  /// Null for a number of no row.
  MenuItem* RowOf(UINT id) const;

  /// Emitted after a row has changed.
  Signal<> Changed;

 private:
  void Add(HMENU menu, MenuItem& row, UINT place, bool shows_default);
  void Follow(HMENU menu, MenuItem& row, UINT place);
  void FollowDefault(HMENU menu, MenuItem& row, UINT place);

  std::vector<MenuItem*> rows_;  ///< by their numbers, from kFirstId on
  std::vector<Subscription> follows_;
};

/// The menu bar of a window, with a menu for each item.
class WindowsMenuBar {
 public:
  /// Puts it on `window`. Choices are reported by `loop`.
  WindowsMenuBar(HWND window, const std::vector<MenuItem*>& items, EventLoop& loop);
  WindowsMenuBar(const WindowsMenuBar&) = delete;
  WindowsMenuBar& operator=(const WindowsMenuBar&) = delete;
  ~WindowsMenuBar();

  /// A command of the window's that no control sent. False for a number of no row.
  bool OnCommand(UINT id);

 private:
  HWND window_;
  HMENU bar_;
  EventLoop& loop_;
  WindowsMenu rows_;
};

/// Opens a menu at the pointer; returns when it has closed and the choice was reported.
/// `owner` is a window of this thread, shown or not, which comes to the foreground.
void PopUpMenu(HWND owner, MenuItem& menu, EventLoop& loop);

}  // namespace tarnvale
