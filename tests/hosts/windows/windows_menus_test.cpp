#include "hosts/windows/windows_menus.h"

#include "tests/hosts/windows/desktop_fixture.h"

namespace tarnvale::testing {
namespace {

class WindowsMenusTest : public WindowsDesktopTest {
 protected:
  WindowsMenusTest() {
    file.Add(backup);
    file.AddSeparator();
    file.Add(more);
    more.Add(restore);
    backup.IsDefault = true;
  }
  ~WindowsMenusTest() override { ::DestroyWindow(window); }

  static std::wstring CaptionAt(HMENU menu, UINT place) {
    wchar_t text[64] = L"";
    ::GetMenuStringW(menu, place, text, 64, MF_BYPOSITION);
    return text;
  }
  static UINT StateAt(HMENU menu, UINT place) { return ::GetMenuState(menu, place, MF_BYPOSITION); }

  /// Opens `file` and presses keys in it as soon as it is there.
  void PopUpAndPress(const std::vector<WPARAM>& keys) {
    const Once presses(
        loop, [] { return IsMenuOpen(); },
        [&] {
          for (const WPARAM key : keys) {
            ::PostMessageW(window, WM_KEYDOWN, key, 0);
            ::PostMessageW(window, WM_KEYUP, key, 0);
          }
        });
    PopUpMenu(window, file, loop);
    EXPECT_TRUE(presses.HasActed());
  }

  HWND window = ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 10, 10, 300, 200,
                                  nullptr, nullptr, nullptr, nullptr);
  MenuItem file{"&File"};
  MenuItem backup{"&Backup && more"};
  MenuItem more{"&More"};
  MenuItem restore{"&Restore"};
};

TEST_F(WindowsMenusTest, ABarHasAMenuForEachItemAndFollowsTheRecords) {
  const WindowsMenuBar bar(window, {&file}, loop);
  const HMENU native = ::GetMenu(window);
  ASSERT_EQ(::GetMenuItemCount(native), 1);
  EXPECT_EQ(CaptionAt(native, 0), L"&File");
  const HMENU rows = ::GetSubMenu(native, 0);
  ASSERT_EQ(::GetMenuItemCount(rows), 3);
  EXPECT_EQ(CaptionAt(rows, 0), L"&Backup && more");
  EXPECT_NE(StateAt(rows, 1) & MF_SEPARATOR, 0U);
  EXPECT_EQ(CaptionAt(::GetSubMenu(rows, 2), 0), L"&Restore");

  backup.Caption = "&Stop\x01";
  backup.Enabled = false;
  file.Enabled = false;
  EXPECT_EQ(CaptionAt(rows, 0), L"&Stop?");
  EXPECT_NE(StateAt(rows, 0) & MF_GRAYED, 0U);
  EXPECT_NE(StateAt(native, 0) & MF_GRAYED, 0U);
  backup.Enabled = true;
  EXPECT_EQ(StateAt(rows, 0) & MF_GRAYED, 0U);
}

TEST_F(WindowsMenusTest, NoRowOfABarIsBold) {
  const WindowsMenuBar bar(window, {&file}, loop);
  const HMENU rows = ::GetSubMenu(::GetMenu(window), 0);
  EXPECT_EQ(::GetMenuDefaultItem(rows, TRUE, GMDI_USEDISABLED), static_cast<UINT>(-1));
}

TEST_F(WindowsMenusTest, ACommandClicksItsRow) {
  WindowsMenuBar bar(window, {&file}, loop);
  const HMENU rows = ::GetSubMenu(::GetMenu(window), 0);
  int backups = 0;
  int restores = 0;
  backup.Clicked.Listen([&] { ++backups; });
  restore.Clicked.Listen([&] { ++restores; });
  EXPECT_TRUE(bar.OnCommand(::GetMenuItemID(rows, 0)));
  EXPECT_TRUE(bar.OnCommand(::GetMenuItemID(::GetSubMenu(rows, 2), 0)));
  EXPECT_EQ(backups, 1);
  EXPECT_EQ(restores, 1);
  EXPECT_FALSE(bar.OnCommand(IDCANCEL));
  EXPECT_FALSE(bar.OnCommand(999));
}

TEST_F(WindowsMenusTest, AnErrorOfARowStaysInTheLoop) {
  WindowsEventLoop other;
  int number = 0;
  other.Fault.Listen([&](const ProgramError& error) { number = error.Number(); });
  WindowsMenuBar bar(window, {&file}, other);
  backup.Clicked.Listen([] { throw ProgramError(kOverflow); });
  EXPECT_TRUE(bar.OnCommand(::GetMenuItemID(::GetSubMenu(::GetMenu(window), 0), 0)));
  EXPECT_EQ(number, kOverflow);
}

TEST_F(WindowsMenusTest, ABarThatGoesLeavesTheWindowWithoutOne) {
  { const WindowsMenuBar bar(window, {&file}, loop); }
  EXPECT_EQ(::GetMenu(window), nullptr);
  backup.Caption = "Nobody follows";
}

TEST_F(WindowsMenusTest, APopUpReportsTheChosenRowWhenItHasClosed) {
  int backups = 0;
  bool was_open = true;
  backup.Clicked.Listen([&] {
    ++backups;
    was_open = IsMenuOpen();
  });
  PopUpAndPress({VK_DOWN, VK_RETURN});
  EXPECT_EQ(backups, 1);
  EXPECT_FALSE(was_open);
}

TEST_F(WindowsMenusTest, EscapeChoosesNothing) {
  backup.Clicked.Listen([] { ADD_FAILURE(); });
  PopUpAndPress({VK_DOWN, VK_ESCAPE});
}

TEST_F(WindowsMenusTest, TheDefaultRowOfAPopUpIsBold) {
  UINT bold = 0;
  const Once looks(
      loop, [] { return TopWindow(L"#32768") != nullptr; },
      [&] {
        const auto menu = reinterpret_cast<HMENU>(
            ::SendMessageW(TopWindow(L"#32768"), 0x01E1 /* MN_GETHMENU */, 0, 0));
        bold = ::GetMenuDefaultItem(menu, TRUE, GMDI_USEDISABLED);
        ::EndMenu();
      });
  PopUpMenu(window, file, loop);
  EXPECT_EQ(bold, 0U);
}

TEST_F(WindowsMenusTest, TimersTickBehindAMenuAndTheProgramsEndClosesIt) {
  Timer other(loop.Timers(), 10, true);
  int ticks = 0;
  other.Tick.Listen([&] {
    if (IsMenuOpen() && ++ticks == 5) loop.Quit(4);
  });
  loop.Post([this] { PopUpMenu(window, file, loop); });
  EXPECT_EQ(loop.Run(), 4);
  EXPECT_FALSE(IsMenuOpen());
}

}  // namespace
}  // namespace tarnvale::testing
