// Lists and combo boxes, and their records.
#include "tests/hosts/windows/windows_fixture.h"

namespace tarnvale::testing {
namespace {

class WindowsListsTest : public WindowsWindowTest {
 protected:
  static void Choose(HWND combo, WPARAM row, WORD code) {
    Send(combo, CB_SETCURSEL, row);
    Send(::GetParent(combo), WM_COMMAND, MAKEWPARAM(0, code), reinterpret_cast<LPARAM>(combo));
  }
};

TEST_F(WindowsListsTest, AControlCharacterIsShownAsAQuestionMark) {
  ListBox box;
  box.Rows.Append("t\x07wo");
  Place(box);
  Show();
  EXPECT_EQ(RowsIn(box), std::vector<std::string>{"t?wo"});
}

TEST_F(WindowsListsTest, AWideRowCanBeScrolledTo) {
  ListBox box;
  box.Rows.Assign({"a"});
  Place(box);
  Show();
  box.Rows.Append(std::string(200, 'W'));
  EXPECT_GT(Send(NativeOf(box), LB_GETHORIZONTALEXTENT), 1000);
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
