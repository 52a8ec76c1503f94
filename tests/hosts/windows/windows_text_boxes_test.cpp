// Fields and their records.
#include "hosts/windows/system_headers.h"

#include <shlobj.h>
#include <windowsx.h>

#include <cstdlib>
#include <cstring>

#include "tests/hosts/windows/windows_fixture.h"

namespace tarnvale::testing {
namespace {

class WindowsTextBoxesTest : public WindowsWindowTest {
 protected:
  struct Range {
    DWORD start = 0;
    DWORD end = 0;
    bool operator==(const Range&) const = default;
  };
  static Range SelectedIn(HWND field) {
    Range range;
    Send(field, EM_GETSEL, reinterpret_cast<WPARAM>(&range.start),
         reinterpret_cast<LPARAM>(&range.end));
    return range;
  }
  HWND ShowField(TextBox& box) {
    Place(box);
    Show();
    return NativeOf(box);
  }
  LONG LineHeightIn(HWND field) {
    HDC dc = ::GetDC(field);
    HGDIOBJ before = ::SelectObject(dc, reinterpret_cast<HGDIOBJ>(Send(field, WM_GETFONT)));
    TEXTMETRICW metrics{};
    ::GetTextMetricsW(dc, &metrics);
    ::SelectObject(dc, before);
    ::ReleaseDC(field, dc);
    return metrics.tmHeight;
  }
  void SetClipboard(const std::wstring& text) {
    ASSERT_TRUE(::OpenClipboard(Native()));
    ::EmptyClipboard();
    HGLOBAL data = ::GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
    text.copy(static_cast<wchar_t*>(::GlobalLock(data)), text.size());
    static_cast<wchar_t*>(::GlobalLock(data))[text.size()] = 0;
    ::SetClipboardData(CF_UNICODETEXT, data);
    ::CloseClipboard();
  }
};

TEST_F(WindowsTextBoxesTest, ALineIsInTheMiddleOfItsField) {
  TextBox plain;
  TextBox masked(TextKind::kMasked);
  masked.Mask = "##:##";
  TextBox password(TextKind::kPassword);
  ComboBox combo;
  plain.Text = password.Text = combo.Text = "High";
  window.Place({{&plain, nullptr, {10, 10, 200, 24}},
                {&masked, nullptr, {10, 50, 200, 24}},
                {&password, nullptr, {10, 90, 200, 30}},
                {&combo, nullptr, {10, 130, 200, 48}}});
  next_top = 190;
  Show();
  for (Control* control : std::vector<Control*>{&plain, &masked, &password, &combo}) {
    HWND inner = ::FindWindowExW(NativeOf(*control), nullptr, L"EDIT", nullptr);
    HWND field = inner != nullptr ? inner : NativeOf(*control);
    POINT text{0, GET_Y_LPARAM(Send(field, EM_POSFROMCHAR))};
    ::MapWindowPoints(field, Native(), &text, 1);
    const RECT& area = PeerOf(*control).Area();
    const LONG above = text.y - area.top;
    const LONG below = area.bottom - text.y - LineHeightIn(field);
    EXPECT_GE(above, 3);
    EXPECT_LE(std::abs(above - below), 1);
  }
}

TEST_F(WindowsTextBoxesTest, WhatIsAboveALineIsOfTheFieldAndTakesItsClicks) {
  TextBox box;
  window.Place({{&box, nullptr, {10, 10, 200, 40}}});
  next_top = 60;
  Show();
  HWND field = NativeOf(box);
  const auto shows = [&](int system_color) {
    const COLORREF color = ::GetSysColor(system_color);
    return WaitFor([&] {
      ::UpdateWindow(field);
      return ColorAt(20, 14) == ((color & 0xFFU) << 16U | (color & 0xFF00U) | color >> 16U);
    });
  };
  EXPECT_TRUE(shows(COLOR_WINDOW));
  POINT above{20, 14};
  ::ClientToScreen(Native(), &above);
  EXPECT_EQ(Send(field, WM_NCHITTEST, 0, MAKELPARAM(above.x, above.y)), HTCLIENT);
  box.ReadOnly = true;
  EXPECT_TRUE(shows(COLOR_BTNFACE));
  box.ReadOnly = false;
  EXPECT_TRUE(shows(COLOR_WINDOW));
  box.Enabled = false;
  EXPECT_TRUE(shows(COLOR_BTNFACE));
}

TEST_F(WindowsTextBoxesTest, FollowsVisibleAndEnabled) {
  TextBox box;
  HWND field = ShowField(box);
  box.Enabled = false;
  EXPECT_FALSE(::IsWindowEnabled(field));
  box.Visible = false;
  EXPECT_FALSE(::IsWindowVisible(field));
  box.Visible = true;
  box.Enabled = true;
  EXPECT_TRUE(::IsWindowVisible(field));
  EXPECT_TRUE(::IsWindowEnabled(field));
}

TEST_F(WindowsTextBoxesTest, APasswordIsShownAsStars) {
  TextBox box(TextKind::kPassword);
  HWND field = ShowField(box);
  EXPECT_EQ(Send(field, EM_GETPASSWORDCHAR), L'*');
  Type(field, L"se");
  EXPECT_EQ(box.Text.Get(), "se");
}

TEST_F(WindowsTextBoxesTest, PastingAndCuttingKeepToTheMask) {
  TextBox box(TextKind::kMasked);
  box.Mask = "##:##";
  HWND field = ShowField(box);
  SetClipboard(L"14:55");
  Send(field, EM_SETSEL, 0, 0);
  Send(field, WM_PASTE);
  EXPECT_EQ(box.Text.Get(), "14:55");
  Send(field, EM_SETSEL, 0, 2);
  Send(field, WM_CUT);
  EXPECT_EQ(box.Text.Get(), "00:55");
  EXPECT_EQ(TextOf(field), L"00:55");
}

TEST_F(WindowsTextBoxesTest, LineEndsOfAMemoAreFullOnesInBoth) {
  TextBox box(TextKind::kMemo);
  box.Text = "one\ntwo\r\n";
  HWND field = ShowField(box);
  EXPECT_EQ(TextOf(field), L"one\r\ntwo\r\n");
  box.Selection = TextSelection{4, 3};
  EXPECT_EQ(SelectedIn(field), (Range{5, 8}));
  Type(field, L"x\r");
  EXPECT_EQ(box.Text.Get(), "one\r\nx\r\n\r\n");
}

TEST_F(WindowsTextBoxesTest, AppendingComesToTheScreenAndPutsTheCaretThere) {
  TextBox box(TextKind::kMemo);
  box.ReadOnly = true;
  HWND field = ShowField(box);
  int changes = 0;
  box.Text.Changed().Listen([&] { ++changes; });
  box.Append("one\r");
  box.Append("\ntwo");
  ASSERT_TRUE(WaitFor([&] { return TextOf(field) == L"one\r\ntwo"; }));
  EXPECT_EQ(SelectedIn(field), (Range{8, 8}));
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(box.Text.Get(), "one\r\ntwo");
}

TEST_F(WindowsTextBoxesTest, ALongTextIsHeldWhole) {
  TextBox box(TextKind::kMemo);
  std::string text;
  while (text.size() < 100'000) text += "a line of a long text\r\n";
  box.Text = text;
  HWND field = ShowField(box);
  Send(field, EM_SETSEL, 0, 0);
  Type(field, L"y");
  EXPECT_EQ(box.Text.Get(), "y" + text);
}

TEST_F(WindowsTextBoxesTest, CtrlASelectsAllOfAMemo) {
  TextBox box(TextKind::kMemo);
  box.Text = "one\r\ntwo";
  HWND field = ShowField(box);
  Send(field, WM_CHAR, 1);
  EXPECT_EQ(box.Selection.Get(), (TextSelection{0, 8}));
}

TEST_F(WindowsTextBoxesTest, DroppedFilesAreReported) {
  TextBox plain;
  TextBox box;
  box.AcceptsFiles = true;
  Place(plain);
  HWND field = ShowField(box);
  EXPECT_NE(::GetWindowLongPtrW(field, GWL_EXSTYLE) & WS_EX_ACCEPTFILES, 0);
  EXPECT_EQ(::GetWindowLongPtrW(NativeOf(plain), GWL_EXSTYLE) & WS_EX_ACCEPTFILES, 0);
  std::vector<Path> dropped;
  box.FilesDropped.Listen([&](const std::vector<Path>& paths) { dropped = paths; });
  const std::wstring names(L"C:\\a.txt\0C:\\Zo\xEB\0\0", 17);
  HGLOBAL data = ::GlobalAlloc(GHND, sizeof(DROPFILES) + names.size() * sizeof(wchar_t));
  auto* drop = static_cast<DROPFILES*>(::GlobalLock(data));
  drop->pFiles = sizeof(DROPFILES);
  drop->fWide = TRUE;
  std::memcpy(drop + 1, names.data(), names.size() * sizeof(wchar_t));
  ::GlobalUnlock(data);
  Send(field, WM_DROPFILES, reinterpret_cast<WPARAM>(data));
  EXPECT_EQ(dropped, (std::vector<Path>{"C:\\a.txt", "C:\\Zo\xC3\xAB"}));
}

TEST_F(WindowsTextBoxesTest, TabGoesOnAndTheWindowSeesKeysFirst) {
  TextBox first;
  TextBox second(TextKind::kMemo);
  Place(first);
  HWND field = ShowField(second);
  window.Focus(first);
  EXPECT_EQ(::GetFocus(), NativeOf(first));
  PressKey(NativeOf(first), VK_TAB);
  EXPECT_EQ(window.Focused(), &second);
  EXPECT_EQ(::GetFocus(), field);
  window.KeyDown.Listen([](KeyEvent& key) { key.handled = key.press.key == Key::kDelete; });
  second.Text = "abc";
  Send(field, EM_SETSEL, 0, 0);
  PressKey(field, VK_DELETE);
  EXPECT_EQ(second.Text.Get(), "abc");
}

}  // namespace
}  // namespace tarnvale::testing
