// Lists and combo boxes, and their records.
#include "tests/hosts/windows/windows_fixture.h"

namespace tarnvale::testing {
namespace {

class WindowsListsTest : public WindowsWindowTest {
 protected:
  static std::vector<std::wstring> RowsOf(HWND list) {
    std::vector<std::wstring> rows;
    for (LRESULT i = 0; i < Send(list, LB_GETCOUNT); ++i) {
      wchar_t text[256] = L"";
      Send(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
      rows.emplace_back(text);
    }
    return rows;
  }
  static std::vector<int> SelectedIn(HWND list) {
    std::vector<int> rows;
    for (int i = 0; i < Send(list, LB_GETCOUNT); ++i) {
      if (Send(list, LB_GETSEL, static_cast<WPARAM>(i)) > 0) rows.push_back(i);
    }
    return rows;
  }
  static void ClickRow(HWND list, int row, WPARAM held = 0) {
    RECT place{};
    Send(list, LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    const LPARAM at = MAKELPARAM(place.left + 5, (place.top + place.bottom) / 2);
    Send(list, WM_LBUTTONDOWN, MK_LBUTTON | held, at);
    Send(list, WM_LBUTTONUP, held, at);
  }
  static void Choose(HWND combo, WPARAM row, WORD code) {
    Send(combo, CB_SETCURSEL, row);
    Send(::GetParent(combo), WM_COMMAND, MAKEWPARAM(0, code), reinterpret_cast<LPARAM>(combo));
  }
};

TEST_F(WindowsListsTest, RowsFollowTheRecord) {
  ListBox box;
  box.Rows.Append("one");
  Place(box);
  Show();
  HWND list = NativeOf(box);
  EXPECT_EQ(RowsOf(list), (std::vector<std::wstring>{L"one"}));
  box.Rows.Append("t\x07wo");
  box.Rows.Append("three");
  EXPECT_EQ(RowsOf(list), (std::vector<std::wstring>{L"one", L"t?wo", L"three"}));
  box.Rows.RemoveAt(1);
  EXPECT_EQ(RowsOf(list), (std::vector<std::wstring>{L"one", L"three"}));
  box.Rows.Assign({"a", "b"});
  EXPECT_EQ(RowsOf(list), (std::vector<std::wstring>{L"a", L"b"}));
}

TEST_F(WindowsListsTest, OneRowIsSelectedInBoth) {
  ListBox box;
  box.Rows.Assign({"a", "b", "c"});
  box.Select(1, true);
  Place(box);
  Show();
  HWND list = NativeOf(box);
  EXPECT_EQ(Send(list, LB_GETCURSEL), 1);
  int changes = 0;
  box.SelectionChanged.Listen([&] { ++changes; });
  ClickRow(list, 2);
  EXPECT_EQ(box.FirstSelected(), 2U);
  EXPECT_FALSE(box.IsSelected(1));
  EXPECT_GE(changes, 1);
  box.SelectNone();
  EXPECT_TRUE(WaitFor([&] { return Send(list, LB_GETCURSEL) == LB_ERR; }));
}

TEST_F(WindowsListsTest, ManyRowsAreSelectedInBoth) {
  ListBox box;
  box.MultiSelect = true;
  box.Rows.Assign({"a", "b", "c", "d"});
  Place(box);
  Show();
  HWND list = NativeOf(box);
  box.Select(0, true);
  box.Select(2, true);
  EXPECT_TRUE(WaitFor([&] { return SelectedIn(list) == std::vector<int>{0, 2}; }));
  ClickRow(list, 1);
  EXPECT_TRUE(box.IsSelected(1));
  EXPECT_FALSE(box.IsSelected(0));
  ClickRow(list, 3, MK_SHIFT);
}

TEST_F(WindowsListsTest, ASelectedRowStaysSoWhenOneAboveItGoes) {
  ListBox box;
  box.MultiSelect = true;
  box.Rows.Assign({"a", "b", "c"});
  box.Select(2, true);
  Place(box);
  Show();
  box.Rows.RemoveAt(0);
  EXPECT_TRUE(WaitFor([&] { return SelectedIn(NativeOf(box)) == std::vector<int>{1}; }));
  EXPECT_TRUE(box.IsSelected(1));
}

TEST_F(WindowsListsTest, ADoubleClickIsReported) {
  ListBox box;
  box.Rows.Assign({"a", "b"});
  Place(box);
  Show();
  int clicks = 0;
  box.DoubleClicked.Listen([&] { ++clicks; });
  ClickRow(NativeOf(box), 1);
  Send(NativeOf(box), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5));
  Send(NativeOf(box), WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
  EXPECT_EQ(clicks, 1);
}

TEST_F(WindowsListsTest, AWideRowCanBeScrolledTo) {
  ListBox box;
  box.Rows.Assign({"a"});
  Place(box);
  Show();
  box.Rows.Append(std::string(200, 'W'));
  EXPECT_GT(Send(NativeOf(box), LB_GETHORIZONTALEXTENT), 1000);
}

TEST_F(WindowsListsTest, FilesAreShownAndTheOneWithTheCaretIsTheRecordsName) {
  files.Write("C:\\Data\\a.txt", "a");
  files.Write("C:\\Data\\b.txt", "b");
  FileList box(files);
  box.Folder = "C:\\Data";
  Place(box);
  Show();
  HWND list = NativeOf(box);
  EXPECT_EQ(RowsOf(list), (std::vector<std::wstring>{L"a.txt", L"b.txt"}));
  ClickRow(list, 1);
  EXPECT_EQ(box.FileName(), "b.txt");
  files.Write("C:\\Data\\c.txt", "c");
  box.Refresh();
  EXPECT_EQ(RowsOf(list).size(), 3U);
  EXPECT_TRUE(SelectedIn(list).empty());
}

TEST_F(WindowsListsTest, AComboMirrorsItsTextAndRows) {
  ComboBox combo;
  combo.Rows.Assign({"Daily", "Weekly"});
  combo.Text = "Weekly";
  Place(combo);
  Show();
  HWND box = NativeOf(combo);
  EXPECT_EQ(TextOf(box), L"Weekly");
  EXPECT_EQ(Send(box, CB_GETCURSEL), 1);
  combo.Text = "Other";
  EXPECT_EQ(TextOf(box), L"Other");
  EXPECT_EQ(Send(box, CB_GETCURSEL), CB_ERR);
  HWND field = ::FindWindowExW(box, nullptr, L"EDIT", nullptr);
  Send(field, EM_SETSEL, 5, 5);
  Type(field, L"s");
  EXPECT_EQ(combo.Text.Get(), "Others");
  combo.Rows.Append("Others");
  EXPECT_EQ(Send(box, CB_GETCOUNT), 3);
  EXPECT_EQ(TextOf(box), L"Others");
  Choose(box, 0, CBN_SELENDOK);
  EXPECT_EQ(combo.Text.Get(), "Daily");
}

TEST_F(WindowsListsTest, ARowThatIsTypedKeepsTheCaret) {
  ComboBox combo;
  combo.Rows.Assign({"ab"});
  Place(combo);
  Show();
  HWND field = ::FindWindowExW(NativeOf(combo), nullptr, L"EDIT", nullptr);
  Type(field, L"abc");
  EXPECT_EQ(combo.Text.Get(), "abc");
}

TEST_F(WindowsListsTest, AChoiceIsMadeByKeysInAClosedComboAndTakenBackInAnOpenOne) {
  ComboBox combo;
  combo.Editable = false;
  combo.Rows.Assign({"a", "b", "c"});
  combo.Text = "a";
  Place(combo);
  Show();
  HWND box = NativeOf(combo);
  window.Focus(combo);
  PressKey(box, VK_DOWN);
  EXPECT_EQ(combo.Text.Get(), "b");
  Send(box, CB_SHOWDROPDOWN, TRUE);
  PressKey(box, VK_DOWN);
  EXPECT_EQ(combo.Text.Get(), "b");
  PressKey(box, VK_ESCAPE);
  EXPECT_EQ(combo.Text.Get(), "b");
  EXPECT_EQ(Send(box, CB_GETCURSEL), 1);
  Send(box, CB_SHOWDROPDOWN, TRUE);
  PressKey(box, VK_DOWN);
  PressKey(box, VK_RETURN);
  EXPECT_EQ(combo.Text.Get(), "c");
}

TEST_F(WindowsListsTest, AComboIsAsHighAsItsPlace) {
  ComboBox combo;
  window.Place({{&combo, nullptr, {10, 10, 120, 22}}});
  Show();
  RECT place{};
  ::GetWindowRect(NativeOf(combo), &place);
  EXPECT_EQ(place.bottom - place.top, 22);
}

}  // namespace
}  // namespace tarnvale::testing
