// Lists of each desktop, and their records.
#include <string>
#include <vector>

#include "tests/hosts/contract/desktop_under_test.h"

namespace tarnvale::testing {
namespace {

using Rows = std::vector<std::string>;

class DesktopLists : public DesktopUnderTest {
 protected:
  DesktopLists() { list.Rows.Assign({"a", "b", "c", "d"}); }

  /// Shows `list` with its rows, "a" to "d".
  void ShowRows(bool has_many) {
    list.MultiSelect = has_many;
    Place(list);
    Show();
  }
  bool ShowsSelected(const std::vector<int>& rows) {
    return WaitFor([&] { return SelectedRowsIn(list) == rows; });
  }
  /// The rows that the record has selected, as "bd".
  std::string Selected() {
    std::string rows;
    for (std::size_t i = 0; i < list.Rows.Count(); ++i) {
      if (list.IsSelected(i)) rows += list.Rows.At(i);
    }
    return rows;
  }

  ListBox list;
};

TEST_F(DesktopLists, RowsFollowTheRecord) {
  list.Rows.Assign({"one"});
  ShowRows(false);
  EXPECT_EQ(RowsIn(list), (Rows{"one"}));
  list.Rows.Append("two");
  list.Rows.Append("three");
  EXPECT_EQ(RowsIn(list), (Rows{"one", "two", "three"}));
  list.Rows.RemoveAt(1);
  EXPECT_EQ(RowsIn(list), (Rows{"one", "three"}));
  list.Rows.Assign({"a", "b"});
  EXPECT_EQ(RowsIn(list), (Rows{"a", "b"}));
}

TEST_F(DesktopLists, OneRowIsSelectedInBoth) {
  list.Select(1, true);
  ShowRows(false);
  EXPECT_TRUE(ShowsSelected({1}));
  int changes = 0;
  list.SelectionChanged.Listen([&] { ++changes; });
  ClickRow(list, 0);
  ClickRow(list, 2, Held::kControl);
  EXPECT_EQ(Selected(), "c");
  EXPECT_GE(changes, 2);
  list.SelectNone();
  EXPECT_TRUE(ShowsSelected({}));
}

TEST_F(DesktopLists, ManyRowsAreSelectedInBoth) {
  ShowRows(true);
  list.Select(0, true);
  list.Select(2, true);
  EXPECT_TRUE(ShowsSelected({0, 2}));
  ClickRow(list, 1);
  EXPECT_EQ(Selected(), "b");
  ClickRow(list, 3, Held::kControl);
  EXPECT_EQ(Selected(), "bd");
  ClickRow(list, 0);
  EXPECT_EQ(Selected(), "a");
  ClickRow(list, 2, Held::kShift);
  EXPECT_EQ(Selected(), "abc");
  list.SelectNone();
  EXPECT_TRUE(ShowsSelected({}));
}

TEST_F(DesktopLists, RemovingARowKeepsTheSelectionOfTheOthers) {
  ShowRows(true);
  ClickRow(list, 1);
  ClickRow(list, 3, Held::kControl);
  list.Rows.RemoveAt(1);
  EXPECT_EQ(Selected(), "d");
  EXPECT_TRUE(ShowsSelected({2}));
}

TEST_F(DesktopLists, ADoubleClickComesAfterTheSelection) {
  FileList box(files);
  for (const char* name : {"one.txt", "two.txt"}) files.Write(std::string("C:\\data\\") + name, "");
  box.Folder = "C:\\data";
  std::string opened;
  box.DoubleClicked.Listen([&] { opened += box.FileName(); });
  Place(box);
  Show();
  ClickRow(box, 1);
  DoubleClickRow(box, 1);
  EXPECT_EQ(opened, "two.txt");
}

TEST_F(DesktopLists, AFileListShowsWhatItsFolderHolds) {
  FileList box(files);
  files.Write("C:\\data\\a.txt", "");
  files.Write("C:\\data\\b.txt", "");
  Place(box);
  Show();
  EXPECT_EQ(RowsIn(box), Rows{});
  box.Folder = "C:\\data";
  EXPECT_EQ(RowsIn(box), (Rows{"a.txt", "b.txt"}));
  ClickRow(box, 1);
  EXPECT_EQ(box.FileName(), "b.txt");
  files.Write("C:\\data\\c.txt", "");
  box.Refresh();
  EXPECT_EQ(RowsIn(box).size(), 3U);
  EXPECT_TRUE(WaitFor([&] { return SelectedRowsIn(box).empty(); }));
}

TEST_F(DesktopLists, TheFileSelectedLastIsTheOneThatTheUserWentTo) {
  FileList box(files);
  for (const char* name : {"a", "b", "c"}) files.Write(std::string("C:\\data\\") + name, "");
  box.Folder = "C:\\data";
  Place(box);
  Show();
  ClickRow(box, 2);
  ClickRow(box, 0, Held::kShift);
  EXPECT_TRUE(box.IsSelected(1));
  EXPECT_EQ(box.FileName(), "a");
}

}  // namespace
}  // namespace tarnvale::testing
