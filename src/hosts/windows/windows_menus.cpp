#include "hosts/windows/windows_menus.h"

#include <string>

#include "hosts/windows/shown_text.h"

namespace tarnvale {
namespace {

/// The numbers below belong to the system's own dialogs.
constexpr UINT kFirstId = 100;

std::vector<MenuItem*> RowsOf(const MenuItem& item) {
  return {item.Rows().begin(), item.Rows().end()};
}

void SetCaption(HMENU menu, UINT place, const std::string& caption) {
  std::wstring text = ToShown(caption);
  MENUITEMINFOW info{};
  info.cbSize = sizeof info;
  info.fMask = MIIM_STRING;
  info.dwTypeData = text.data();
  ::SetMenuItemInfoW(menu, place, TRUE, &info);
}

/// Destroys what opens from its rows with it.
struct PopUp {
  PopUp() = default;
  PopUp(const PopUp&) = delete;
  PopUp& operator=(const PopUp&) = delete;
  ~PopUp() { ::DestroyMenu(menu); }

  HMENU menu = ::CreatePopupMenu();
};

}  // namespace

WindowsMenu::WindowsMenu(HMENU menu, const std::vector<MenuItem*>& rows, bool shows_default) {
  UINT place = 0;
  for (MenuItem* row : rows) Add(menu, *row, place++, shows_default);
}

MenuItem* WindowsMenu::RowOf(UINT id) const {
  const UINT at = id - kFirstId;
  return at < rows_.size() ? rows_[at] : nullptr;
}

void WindowsMenu::Add(HMENU menu, MenuItem& row, UINT place, bool shows_default) {
  if (row.IsSeparator()) {
    ::AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    return;
  }
  if (row.Rows().empty()) {
    ::AppendMenuW(menu, MF_STRING, kFirstId + rows_.size(), L"");
    rows_.push_back(&row);
    if (shows_default) FollowDefault(menu, row, place);
  } else {
    HMENU below = ::CreatePopupMenu();
    ::AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(below), L"");
    UINT place_below = 0;
    for (MenuItem* next : row.Rows()) Add(below, *next, place_below++, shows_default);
  }
  Follow(menu, row, place);
}

void WindowsMenu::Follow(HMENU menu, MenuItem& row, UINT place) {
  const auto show = [this, menu, &row, place] {
    SetCaption(menu, place, row.Caption);
    ::EnableMenuItem(menu, place, MF_BYPOSITION | (row.Enabled ? MF_ENABLED : MF_GRAYED));
    Changed.Emit();
  };
  show();
  follows_.push_back(row.Caption.Changed.Subscribe(show));
  follows_.push_back(row.Enabled.Changed.Subscribe(show));
}

void WindowsMenu::FollowDefault(HMENU menu, MenuItem& row, UINT place) {
  const auto show = [menu, &row, place] {
    if (row.IsDefault) {
      ::SetMenuDefaultItem(menu, place, TRUE);
    } else if (::GetMenuDefaultItem(menu, TRUE, GMDI_USEDISABLED) == place) {
      ::SetMenuDefaultItem(menu, static_cast<UINT>(-1), TRUE);
    }
  };
  show();
  follows_.push_back(row.IsDefault.Changed.Subscribe(show));
}

// "Shown in bold where the menu pops up": a menu bar's menu drops down.
WindowsMenuBar::WindowsMenuBar(HWND window, const std::vector<MenuItem*>& items, EventLoop& loop)
    : window_(window), bar_(::CreateMenu()), loop_(loop), rows_(bar_, items, false) {
  rows_.Changed.Listen([this] { ::DrawMenuBar(window_); });
  ::SetMenu(window_, bar_);
}

// A window that has gone took its menu along.
WindowsMenuBar::~WindowsMenuBar() {
  if (::GetMenu(window_) != bar_) return;
  ::SetMenu(window_, nullptr);
  ::DestroyMenu(bar_);
}

bool WindowsMenuBar::OnCommand(UINT id) {
  MenuItem* row = rows_.RowOf(id);
  if (row == nullptr) return false;
  loop_.Deliver([row] { row->Clicked.Emit(); });
  return true;
}

// The system closes a menu at a click elsewhere only when its window is in the foreground, and
// a second one opens at once only after a message behind the first.
void PopUpMenu(HWND owner, MenuItem& menu, EventLoop& loop) {
  const PopUp pop_up;
  const WindowsMenu rows(pop_up.menu, RowsOf(menu), true);
  POINT at{};
  ::GetCursorPos(&at);
  ::SetForegroundWindow(owner);
  const int chosen = ::TrackPopupMenu(pop_up.menu, TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON,
                                      at.x, at.y, 0, owner, nullptr);
  ::PostMessageW(owner, WM_NULL, 0, 0);
  if (MenuItem* row = rows.RowOf(static_cast<UINT>(chosen))) {
    loop.Deliver([row] { row->Clicked.Emit(); });
  }
}

}  // namespace tarnvale
