#include "hosts/windows/windows_tray.h"

#include <shellapi.h>

#include <optional>
#include <vector>

#include "tests/hosts/windows/desktop_fixture.h"
#include "tests/hosts/windows/scripted_system.h"
#include "ui/controls.h"

namespace tarnvale::testing {
namespace {

struct Call {
  DWORD command;
  NOTIFYICONDATAW data;
};

/// The shell answers by script: `refuses` names the commands that fail.
class WindowsTrayTest : public WindowsDesktopTest {
 protected:
  WindowsTrayTest() {
    record.hook = &hook;
    record.icon = "AAA";
    record.tip = "Tarnvale";
    hook.MouseMove.Listen([this](double x_twips, double) { moves.push_back(x_twips); });
  }

  void SendMouse(UINT message) {
    const NOTIFYICONDATAW& icon = calls.back().data;
    ::SendMessageW(icon.hWnd, icon.uCallbackMessage, icon.uID, static_cast<LPARAM>(message));
  }

  PictureBox hook;
  TrayRecord record;
  std::vector<double> moves;
  std::vector<Call> calls;
  std::vector<DWORD> refuses;
  std::vector<std::string> icons;
  bool has_area = true;
  Scripted<std::function<BOOL(BOOL(WINAPI*)(DWORD, NOTIFYICONDATAW*), DWORD, NOTIFYICONDATAW*)>,
           BOOL, DWORD, NOTIFYICONDATAW*>
      shell{"Shell_NotifyIconW", &::Shell_NotifyIconW,
            [this](auto, DWORD command, NOTIFYICONDATAW* data) -> BOOL {
              calls.push_back({command, *data});
              return std::find(refuses.begin(), refuses.end(), command) == refuses.end();
            }};
  Scripted<std::function<HWND(HWND(WINAPI*)(LPCWSTR, LPCWSTR), LPCWSTR, LPCWSTR)>, HWND, LPCWSTR,
           LPCWSTR>
      area{"FindWindowW", &::FindWindowW,
           [this](auto, LPCWSTR, LPCWSTR) { return has_area ? ::GetDesktopWindow() : nullptr; }};
  std::optional<WindowsTray> tray{std::in_place, loop, [this](const std::string& name) {
                                    icons.push_back(name);
                                    return ::LoadIconW(nullptr, IDI_APPLICATION);
                                  }};
};

TEST_F(WindowsTrayTest, AddsChangesAndTakesAway) {
  EXPECT_TRUE(tray->Notify(TrayCommand::kAdd, record));
  EXPECT_EQ(calls.back().command, NIM_ADD);
  EXPECT_EQ(calls.back().data.uID, 1U);
  EXPECT_EQ(calls.back().data.uFlags, UINT{NIF_MESSAGE | NIF_ICON | NIF_TIP});
  EXPECT_EQ(calls.back().data.cbSize, NOTIFYICONDATAW_V2_SIZE);
  EXPECT_STREQ(calls.back().data.szTip, L"Tarnvale");
  EXPECT_EQ(icons.back(), "AAA");

  record.tip = "Next\nrun";
  record.icon = "BBB";
  EXPECT_TRUE(tray->Notify(TrayCommand::kModify, record));
  EXPECT_EQ(calls.back().command, NIM_MODIFY);
  EXPECT_STREQ(calls.back().data.szTip, L"Next\nrun");
  EXPECT_EQ(icons.back(), "BBB");

  EXPECT_TRUE(tray->Notify(TrayCommand::kDelete, record));
  EXPECT_EQ(calls.back().command, NIM_DELETE);
}

TEST_F(WindowsTrayTest, RefusesWhatMakesNoSenseWithoutACall) {
  EXPECT_FALSE(tray->Notify(TrayCommand::kModify, record));
  EXPECT_FALSE(tray->Notify(TrayCommand::kDelete, record));
  EXPECT_TRUE(calls.empty());
  EXPECT_TRUE(tray->Notify(TrayCommand::kAdd, record));
  EXPECT_FALSE(tray->Notify(TrayCommand::kAdd, record));
  EXPECT_EQ(calls.size(), 1U);
}

TEST_F(WindowsTrayTest, AnIconThatTheShellRefusesIsNotThere) {
  refuses = {NIM_ADD, NIM_MODIFY};
  EXPECT_FALSE(tray->Notify(TrayCommand::kAdd, record));
  refuses.clear();
  EXPECT_FALSE(tray->Notify(TrayCommand::kDelete, record));
  EXPECT_TRUE(tray->Notify(TrayCommand::kAdd, record));
}

// "The shell was busy": documented for the time when a session begins.
TEST_F(WindowsTrayTest, AnIconThatABusyShellAddsAllTheSameIsThere) {
  refuses = {NIM_ADD};
  EXPECT_TRUE(tray->Notify(TrayCommand::kAdd, record));
  EXPECT_TRUE(tray->Notify(TrayCommand::kDelete, record));
}

TEST_F(WindowsTrayTest, ATipOf64CharactersFillsTheFieldToItsEnd) {
  record.tip = std::string(64, 'x');
  tray->Notify(TrayCommand::kAdd, record);
  EXPECT_EQ(std::wstring(calls.back().data.szTip), std::wstring(64, L'x'));
}

TEST_F(WindowsTrayTest, ATipIsNeverCutWithinACharacter) {
  record.tip.clear();
  for (int i = 0; i < 64; ++i) record.tip += "\xF0\x9F\x92\xBE";  // a pair of surrogates
  tray->Notify(TrayCommand::kAdd, record);
  const std::wstring tip = calls.back().data.szTip;
  EXPECT_EQ(tip.size(), 126U);
  EXPECT_EQ(tip.substr(124), L"\xD83D\xDCBE");
}

TEST_F(WindowsTrayTest, ReportsWhatTheMouseDoes) {
  tray->Notify(TrayCommand::kAdd, record);
  for (const UINT message : {WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK,
                             WM_RBUTTONDOWN, WM_RBUTTONUP, WM_RBUTTONDBLCLK, WM_MBUTTONDOWN}) {
    SendMouse(message);
  }
  EXPECT_EQ(moves,
            (std::vector<double>{513 * 15, 514 * 15, 515 * 15, 516 * 15, 517 * 15, 518 * 15}));
}

TEST_F(WindowsTrayTest, AHandlerMayTakeTheIconAway) {
  tray->Notify(TrayCommand::kAdd, record);
  hook.MouseMove.Listen([&](double, double) { tray->Notify(TrayCommand::kDelete, record); });
  SendMouse(WM_LBUTTONDOWN);
  const std::size_t reported = moves.size();
  SendMouse(WM_LBUTTONUP);
  EXPECT_EQ(moves.size(), reported);
}

TEST_F(WindowsTrayTest, ComesBackWithANewShellAsItWasChangedLast) {
  tray->Notify(TrayCommand::kAdd, record);
  refuses = {NIM_MODIFY};
  record.tip = "Changed";
  EXPECT_FALSE(tray->Notify(TrayCommand::kModify, record));
  refuses.clear();
  int changes = 0;
  tray->IsPresent.Changed.Listen([&] { ++changes; });
  ::SendMessageW(calls.back().data.hWnd, ::RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
  EXPECT_EQ(calls.back().command, NIM_ADD);
  EXPECT_STREQ(calls.back().data.szTip, L"Changed");
  EXPECT_EQ(changes, 0);
}

TEST_F(WindowsTrayTest, ANewShellGetsNoIconThatWasTakenAway) {
  tray->Notify(TrayCommand::kAdd, record);
  tray->Notify(TrayCommand::kDelete, record);
  const std::size_t made = calls.size();
  ::SendMessageW(calls.back().data.hWnd, ::RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
  EXPECT_EQ(calls.size(), made);
}

TEST_F(WindowsTrayTest, TheNewShellsMessageIsSentToEverybody) {
  has_area = false;
  tray.emplace(loop, [](const std::string&) { return nullptr; });
  EXPECT_FALSE(tray->IsPresent);
  ::PostMessageW(HWND_BROADCAST, ::RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
  EXPECT_TRUE(WaitFor([&] { return tray->IsPresent.Get(); }));
}

TEST_F(WindowsTrayTest, AnAreaThatIsMissedTwiceIsGone) {
  tray->Notify(TrayCommand::kAdd, record);
  const HWND native = calls.back().data.hWnd;
  EXPECT_TRUE(tray->IsPresent);
  has_area = false;
  ::SendMessageW(native, WM_TIMER, 1, 0);
  EXPECT_TRUE(tray->IsPresent);
  ::SendMessageW(native, WM_TIMER, 1, 0);
  EXPECT_FALSE(tray->IsPresent);
}

// Quit.exe posts it to each window of the program.
TEST_F(WindowsTrayTest, ItsWindowIsDeafToClosing) {
  tray->Notify(TrayCommand::kAdd, record);
  ::SendMessageW(calls.back().data.hWnd, WM_CLOSE, 0, 0);
  SendMouse(WM_LBUTTONDOWN);
  EXPECT_EQ(moves.size(), 1U);
}

TEST_F(WindowsTrayTest, GoesWithItsIcon) {
  tray->Notify(TrayCommand::kAdd, record);
  tray.reset();
  EXPECT_EQ(calls.back().command, NIM_DELETE);
}

}  // namespace
}  // namespace tarnvale::testing
